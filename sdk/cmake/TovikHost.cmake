# Tovik::host: what a program needs that loads the library ${Tovik_LIBRARY}.
if(NOT TARGET Tovik::host)
  add_library(Tovik::host INTERFACE IMPORTED GLOBAL)
  target_include_directories(Tovik::host INTERFACE ${CMAKE_CURRENT_LIST_DIR}/../include)
  target_compile_definitions(Tovik::host INTERFACE TOVIK_LIBRARY="${Tovik_LIBRARY}")
  target_link_libraries(Tovik::host INTERFACE ${CMAKE_DL_LIBS})
endif()
