# tovik_include_root(TARGET HEADER-OR-FOLDER...): gives the target an include directory with links
# to these headers and folders alone, so that the compiler refuses an #include of any other.
function(tovik_include_root target)
  string(REGEX REPLACE "^tovik-" "" room ${target})
  set(root ${PROJECT_BINARY_DIR}/include/${room})
  file(REMOVE_RECURSE ${root})
  foreach(entry IN LISTS ARGN)
    cmake_path(GET entry PARENT_PATH folder)
    file(MAKE_DIRECTORY ${root}/${folder})
    file(CREATE_LINK ${PROJECT_SOURCE_DIR}/${entry} ${root}/${entry} SYMBOLIC)
  endforeach()
  target_include_directories(${target} PRIVATE ${root})
endfunction()

# tovik_room(TARGET [MAY_INCLUDE ROOM...] SOURCES FILE...): one room of the library, which is the
# current folder, as an object library. It may include its own headers and those of these rooms.
function(tovik_room target)
  cmake_parse_arguments(PARSE_ARGV 1 room "" "" "MAY_INCLUDE;SOURCES")
  add_library(${target} OBJECT ${room_SOURCES})
  cmake_path(GET CMAKE_CURRENT_SOURCE_DIR FILENAME own)
  tovik_include_root(${target} ${own} ${room_MAY_INCLUDE})
endfunction()
