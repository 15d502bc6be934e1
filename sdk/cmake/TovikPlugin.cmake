# tovik_add_plugin(TARGET SOURCE...): a plug-in library for Tovik, linked so that its own calls stay
# its own. Set the property OUTPUT_NAME to the brand; the default brand is "tovik".
function(tovik_add_plugin target)
  add_library(${target} MODULE ${ARGN})
  target_include_directories(${target}
    PRIVATE ${CMAKE_CURRENT_FUNCTION_LIST_DIR}/../include)
  # A unique symbol, of a template for example, would keep the library from ever being closed.
  target_compile_options(${target}
    PRIVATE $<$<COMPILE_LANG_AND_ID:CXX,GNU>:-fno-gnu-unique>)
  target_link_options(${target} PRIVATE -Wl,-Bsymbolic)
  set_target_properties(${target} PROPERTIES
    OUTPUT_NAME tovik
    CXX_VISIBILITY_PRESET hidden
    C_VISIBILITY_PRESET hidden
    VISIBILITY_INLINES_HIDDEN ON)
endfunction()
