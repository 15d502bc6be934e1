# Tovik::plugin: the headers of a plug-in, and the options that keep its own calls its own.
if(NOT TARGET Tovik::plugin)
  add_library(Tovik::plugin INTERFACE IMPORTED GLOBAL)
  get_filename_component(headers ${CMAKE_CURRENT_LIST_DIR}/../include ABSOLUTE)
  target_include_directories(Tovik::plugin INTERFACE ${headers})
  # A unique symbol, of a template for example, would keep the library from ever being closed.
  target_compile_options(Tovik::plugin
    INTERFACE $<$<COMPILE_LANG_AND_ID:CXX,GNU>:-fno-gnu-unique>)
  target_link_options(Tovik::plugin INTERFACE -Wl,-Bsymbolic)
endif()

# tovik_add_plugin(TARGET SOURCE...): a plug-in library. Set the property OUTPUT_NAME to the brand;
# the default brand is "tovik".
function(tovik_add_plugin target)
  add_library(${target} MODULE ${ARGN})
  target_link_libraries(${target} PRIVATE Tovik::plugin)
  set_target_properties(${target} PROPERTIES
    OUTPUT_NAME tovik
    CXX_VISIBILITY_PRESET hidden
    C_VISIBILITY_PRESET hidden
    VISIBILITY_INLINES_HIDDEN ON)
endfunction()
