# Warnings and hardening for everything that is built here.
add_compile_options(
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Werror
  "$<$<COMPILE_LANGUAGE:CXX>:-Wold-style-cast;-Wnon-virtual-dtor>"
  -fstack-protector-strong)
add_link_options(-Wl,-z,defs -Wl,-z,relro -Wl,-z,now -Wl,-z,noexecstack)

if(TOVIK_SANITIZE)
  add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=undefined
    -fno-omit-frame-pointer)
  add_link_options(-fsanitize=address,undefined)
else()
  add_compile_options("$<$<NOT:$<CONFIG:Debug>>:-D_FORTIFY_SOURCE=2>")
endif()

# tovik_room(NAME SOURCE...): one room of the library as an object library, so that every room
# states what it links to. The rooms below GTK have no include path to it; scripts/lint.sh looks
# at what bridge/ takes from webapp/.
function(tovik_room name)
  add_library(${name} OBJECT ${ARGN})
  target_include_directories(${name} PUBLIC ${CMAKE_SOURCE_DIR})
endfunction()
