# Warnings and hardening for all targets. Warnings are errors in the presets of developers alone.
include(CheckCXXCompilerFlag)
include(CheckCXXSourceCompiles)

# What a distribution, a caller or the project that holds this one gives. Their hardening holds.
string(TOUPPER "${CMAKE_BUILD_TYPE}" type)
get_directory_property(options COMPILE_OPTIONS)
get_directory_property(definitions COMPILE_DEFINITIONS)
set(given "${CMAKE_C_FLAGS} ${CMAKE_CXX_FLAGS} ${CMAKE_C_FLAGS_${type}} ${CMAKE_CXX_FLAGS_${type}}
  ${options} ${definitions}")

# Vectors are passed between functions of one unit alone, whose ABI concerns nobody (psabi).
add_compile_options(
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wno-psabi
  "$<$<COMPILE_LANGUAGE:CXX>:-Wold-style-cast;-Wnon-virtual-dtor>")
add_link_options(-Wl,-z,defs -Wl,-z,relro -Wl,-z,now -Wl,-z,noexecstack)

# The options that the compiler uses for this processor, except those that the flags given by a
# distribution decide.
set(CMAKE_REQUIRED_FLAGS -Werror)
foreach(option -fstack-protector-strong -fstack-clash-protection -fcf-protection)
  string(REGEX MATCH "[a-z]+-(clash-)?protect(or|ion)" topic ${option})
  string(MAKE_C_IDENTIFIER "has${option}" has) # a macro of the check, whose name must not warn
  check_cxx_compiler_flag(${option} ${has})
  if(${has} AND NOT given MATCHES ${topic})
    add_compile_options(${option})
  endif()
endforeach()
unset(CMAKE_REQUIRED_FLAGS)

if(TOVIK_SANITIZE)
  add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=undefined
    -fno-omit-frame-pointer)
  add_link_options(-fsanitize=address,undefined)
  add_compile_definitions(TOVIK_NARROW)
  # The tests load the runtime into the processes of the engine, so it must be a shared library.
  set(runtime libasan.so)
  if(CMAKE_CXX_COMPILER_ID MATCHES Clang)
    set(runtime libclang_rt.asan-${CMAKE_SYSTEM_PROCESSOR}.so)
  endif()
  execute_process(COMMAND ${CMAKE_CXX_COMPILER} -print-file-name=${runtime}
    OUTPUT_VARIABLE sanitizer_library OUTPUT_STRIP_TRAILING_WHITESPACE)
  if(CMAKE_CXX_COMPILER_ID MATCHES Clang)
    cmake_path(GET sanitizer_library PARENT_PATH folder)
    add_link_options(-shared-libasan -Wl,-rpath,${folder})
  endif()
elseif(NOT given MATCHES _FORTIFY_SOURCE)
  # Level 3 needs support by the C library and the compiler; every level needs optimisation.
  set(CMAKE_REQUIRED_FLAGS "-O2 -Werror -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=3")
  check_cxx_source_compiles("#include <cstdlib>
int main() { static_assert(__USE_FORTIFY_LEVEL == 3); }" has_fortify_3)
  unset(CMAKE_REQUIRED_FLAGS)
  set(level $<IF:$<BOOL:${has_fortify_3}>,3,2>)
  add_compile_options(
    "$<$<CONFIG:Release,RelWithDebInfo,MinSizeRel>:-U_FORTIFY_SOURCE;-D_FORTIFY_SOURCE=${level}>")
endif()
