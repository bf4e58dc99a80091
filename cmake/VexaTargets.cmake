# What every target of the project has in common: warnings, sanitizers, and an include path on
# which only the folders of the targets it links are visible.
include_guard()

if(VEXA_SANITIZE)
  add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=undefined
                      -fno-omit-frame-pointer)
  add_link_options(-fsanitize=address,undefined)
endif()

if(VEXA_FUZZ)
  if(NOT CMAKE_CXX_COMPILER_ID MATCHES "Clang")
    message(FATAL_ERROR "VEXA_FUZZ needs clang")
  endif()
  add_compile_options(-fsanitize=fuzzer-no-link,address,undefined -fno-sanitize-recover=undefined
                      -fno-omit-frame-pointer)
  add_link_options(-fsanitize=address,undefined)
endif()

function(_vexa_common target)
  target_compile_features(${target} PUBLIC cxx_std_20)
  if(MSVC)
    target_compile_options(${target} PRIVATE /W4 /utf-8 /fp:precise)
    if(VEXA_WERROR)
      target_compile_options(${target} PRIVATE /WX)
    endif()
  else()
    # No fused multiply-add: the same sources give the same digits on every machine.
    target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wconversion -Wshadow
                                             -ffp-contract=off)
    if(VEXA_WERROR)
      target_compile_options(${target} PRIVATE -Werror)
    endif()
  endif()
  if(VEXA_TIDY)
    set_target_properties(${target} PROPERTIES CXX_CLANG_TIDY "clang-tidy;--quiet")
  endif()
endfunction()

# An include root that holds one folder of the project, so that a target which does not link the
# folder's library cannot include its headers. Where the system refuses links the whole source
# tree is visible instead; the include test still guards the order of the folders there.
function(_vexa_include_root target folder)
  set(root ${PROJECT_BINARY_DIR}/include/${target})
  get_filename_component(parent ${root}/${folder} DIRECTORY)
  file(MAKE_DIRECTORY ${parent})
  file(CREATE_LINK ${PROJECT_SOURCE_DIR}/${folder} ${root}/${folder} SYMBOLIC RESULT failed)
  if(failed AND NOT failed STREQUAL "0")
    set(root ${PROJECT_SOURCE_DIR})
  endif()
  target_include_directories(${target} PUBLIC ${root})
endfunction()

# vexa_library(<target> FOLDER <folder> SOURCES <file>... [LINKS <target>...])
function(vexa_library target)
  cmake_parse_arguments(ARG "" "FOLDER" "SOURCES;LINKS" ${ARGN})
  add_library(${target} STATIC ${ARG_SOURCES})
  _vexa_common(${target})
  _vexa_include_root(${target} ${ARG_FOLDER})
  target_link_libraries(${target} PUBLIC ${ARG_LINKS})
endfunction()

# vexa_executable(<target> FOLDER <folder> SOURCES <file>... [LINKS <target>...])
function(vexa_executable target)
  cmake_parse_arguments(ARG "" "FOLDER" "SOURCES;LINKS" ${ARGN})
  add_executable(${target} ${ARG_SOURCES})
  _vexa_common(${target})
  _vexa_include_root(${target} ${ARG_FOLDER})
  target_link_libraries(${target} PRIVATE ${ARG_LINKS})
endfunction()
