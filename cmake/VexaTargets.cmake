# What every target of the project has in common: warnings, sanitizers, and an include path on
# which only the folders of the targets it links are visible.
include_guard()

# What the address sanitizer or the processor stops anyway is not tested a second time before each
# access: these tests are a third of what a compiler has to write.
if(VEXA_SANITIZE)
  add_compile_options(
    -fsanitize=address,undefined -fno-sanitize-recover=undefined -fno-omit-frame-pointer
    -fno-sanitize=null,alignment,vptr,object-size,pointer-overflow
    -fno-sanitize=nonnull-attribute,returns-nonnull-attribute)
  add_link_options(-fsanitize=address,undefined)
  # Late modules are opened through the sanitizer's library: only a run path of the older kind holds for
  # what others open.
  if(UNIX)
    add_link_options(LINKER:--disable-new-dtags)
  endif()
  # To mark every local alive and dead costs a quarter of all compiling at -O0; scripts/fuzz, built
  # by clang, does it for the decoders anyway.
  option(VEXA_SCOPES "Sanitizers also find locals that are used behind the end of their scope" OFF)
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    if(NOT VEXA_SCOPES)
      add_compile_options(-fno-sanitize-address-use-after-scope)
    endif()
    # Many files at a time fill the compiler's memory, and to look for what could be thrown away
    # was a fifth of its work. It begins at 500 MB: a tenth more memory in all.
    add_compile_options("SHELL:--param ggc-min-heapsize=500000")
  endif()
endif()

if(VEXA_FUZZ)
  if(NOT CMAKE_CXX_COMPILER_ID MATCHES "Clang")
    message(FATAL_ERROR "VEXA_FUZZ needs clang")
  endif()
  add_compile_options(-fsanitize=fuzzer-no-link,address,undefined -fno-sanitize-recover=undefined
                      -fno-omit-frame-pointer)
  add_link_options(-fsanitize=address,undefined)
endif()

# Precompiled headers: the standard library, the test framework and the toolkit are most of what a
# source file makes the compiler read. One is built for each kind of target and shared by all of it.
option(VEXA_PCH "Precompile the headers of the standard library, the tests and the toolkit" ON)

# _vexa_precompile(<target> <kind>): the kind is std, test, qt or qt_test.
function(_vexa_precompile target kind)
  if(NOT VEXA_PCH OR VEXA_TIDY)
    return()
  endif()
  set(owner vexa_pch_${kind})
  if(NOT TARGET ${owner})
    set(source ${PROJECT_BINARY_DIR}/pch/${kind}.cpp)
    file(CONFIGURE OUTPUT ${source} CONTENT "// carries the precompiled header\n")
    add_library(${owner} OBJECT ${source})
    _vexa_common(${owner})
    if(kind MATCHES "test")
      target_link_libraries(${owner} PRIVATE GTest::gtest)
    endif()
    if(kind MATCHES "qt")
      target_link_libraries(${owner} PRIVATE Qt6::Widgets)
    endif()
    target_precompile_headers(${owner} PRIVATE ${PROJECT_SOURCE_DIR}/cmake/pch_${kind}.h)
  endif()
  target_precompile_headers(${target} REUSE_FROM ${owner})
endfunction()

# Several source files compiled as one: what they include and instantiate in common is a good half of
# the work of a build from nothing. So file-local names are unique within a target.
option(VEXA_UNITY "Compile the source files of a target several at a time" OFF)

# Some thirty programs and libraries are linked; a linker that works on several cores is a fraction of that.
find_program(VEXA_MOLD mold)
if(VEXA_MOLD AND UNIX AND CMAKE_BUILD_TYPE STREQUAL "Debug" AND NOT VEXA_FUZZ)
  add_link_options(-fuse-ld=mold)
endif()

function(_vexa_common target)
  target_compile_features(${target} PUBLIC cxx_std_20)
  set_target_properties(${target} PROPERTIES UNITY_BUILD ${VEXA_UNITY} UNITY_BUILD_BATCH_SIZE 28)
  if(MSVC)
    target_compile_options(${target} PRIVATE /W4 /utf-8 /fp:precise)
    if(VEXA_WERROR)
      target_compile_options(${target} PRIVATE /WX)
    endif()
  else()
    # No fused multiply-add: the same sources give the same digits on every machine.
    target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wconversion -Wshadow
                                             -ffp-contract=off)
    # GCC 12 sees copies past the end of short strings where there are none, optimised only.
    if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13
       AND NOT CMAKE_BUILD_TYPE STREQUAL "Debug")
      target_compile_options(${target} PRIVATE -Wno-array-bounds -Wno-stringop-overflow
                                               -Wno-stringop-overread)
    endif()
    if(NOT WIN32)  # the same for programs and libraries, or they could share no precompiled header
      target_compile_options(${target} PRIVATE -fPIC)
      if(NOT CMAKE_BUILD_TYPE STREQUAL "Debug")
        target_compile_options(${target} PRIVATE -ffunction-sections)  # for vexa_order_start
      endif()
    endif()
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

# All libraries of the folders, without a program that would be linked.
add_custom_target(vexa_compiled)

# vexa_library(<target> FOLDER <folder> SOURCES <file>... [LINKS <target>...] [QT | QT_WITHOUT_WIDGETS])
function(vexa_library target)
  cmake_parse_arguments(ARG "QT;QT_WITHOUT_WIDGETS" "FOLDER" "SOURCES;LINKS" ${ARGN})
  add_library(${target} STATIC ${ARG_SOURCES})
  _vexa_common(${target})
  if(ARG_QT)
    _vexa_precompile(${target} qt)
  elseif(NOT (WIN32 AND ARG_QT_WITHOUT_WIDGETS))  # there the toolkit has the system's headers say more
    _vexa_precompile(${target} std)
  endif()
  _vexa_include_root(${target} ${ARG_FOLDER})
  target_link_libraries(${target} PUBLIC ${ARG_LINKS})
  add_dependencies(vexa_compiled ${target})
endfunction()

# vexa_executable(<target> FOLDER <folder> SOURCES <file>... [LINKS <target>...])
function(vexa_executable target)
  cmake_parse_arguments(ARG "" "FOLDER" "SOURCES;LINKS" ${ARGN})
  add_executable(${target} ${ARG_SOURCES})
  _vexa_common(${target})
  _vexa_include_root(${target} ${ARG_FOLDER})
  target_link_libraries(${target} PRIVATE ${ARG_LINKS})
endfunction()

# vexa_order_start(<target> <list>): a program takes less memory where the functions that its start runs
# lie side by side, in the order of a list (scripts/start_order), and where the addresses that the loader
# has to fill in are told in their short form. Where the linker cannot do so the program is linked as usual.
include(CheckLinkerFlag)
function(vexa_order_start target list)
  if(NOT UNIX OR CMAKE_BUILD_TYPE STREQUAL "Debug")
    return()
  endif()
  set(order LINKER:-T,${list})
  check_linker_flag(CXX ${order} VEXA_LINKS_IN_ORDER)
  if(VEXA_LINKS_IN_ORDER)
    target_link_options(${target} PRIVATE ${order})
    set_property(TARGET ${target} APPEND PROPERTY LINK_DEPENDS ${list})
  endif()
  set(short LINKER:-z,pack-relative-relocs)
  check_linker_flag(CXX ${short} VEXA_LINKS_SHORT_ADDRESSES)
  if(VEXA_LINKS_SHORT_ADDRESSES)
    target_link_options(${target} PRIVATE ${short})
  endif()
endfunction()

# vexa_late_library(<target> <NAME> <library> [file...]): a library that few runs need is opened when
# they do (core/late_library.h), under the name in VEXA_<NAME>_LIBRARY, which the files know, else all
# of the target; loading it with the program would take longer than all else at the start. Where no
# such name is found it is linked as usual.
function(vexa_late_library target name library)
  set(headers "")
  if(UNIX AND CMAKE_OBJDUMP)
    execute_process(COMMAND ${CMAKE_OBJDUMP} -p ${library} OUTPUT_VARIABLE headers ERROR_QUIET)
  endif()
  if(NOT headers MATCHES "SONAME +([^ \n]+)\\.so\\.([0-9]+)")
    target_link_libraries(${target} PRIVATE ${library})
    return()
  endif()
  set(file ${CMAKE_MATCH_1})
  set(version ${CMAKE_MATCH_2})
  set(definition VEXA_${name}_LIBRARY="${file}.so.${version}")
  if(ARGN)
    set_property(SOURCE ${ARGN} APPEND PROPERTY COMPILE_DEFINITIONS ${definition})
  else()
    target_compile_definitions(${target} PRIVATE ${definition})
  endif()
  # What the package needs is otherwise read from what is linked. A dash stands between two digits.
  string(REGEX REPLACE "([0-9])$" "\\1-" package ${file})
  set_property(GLOBAL APPEND PROPERTY VEXA_LATE_PACKAGES ${package}${version})
endfunction()

# vexa_late_module(<target> <NAME> FOR <file> SOURCES <file>... LINKS <target>...): that of a target's
# code for which few runs need whole libraries. It is made a file beside the program, which FOR opens
# when it is wanted (core/late_library.h), under the name in VEXA_<NAME>_MODULE; it is found by the run
# path of the programs. Where systems know no such path it is linked as usual.
include(GNUInstallDirs)
set(VEXA_MODULE_FOLDER ${PROJECT_BINARY_DIR}/modules)
set(VEXA_MODULE_DESTINATION ${CMAKE_INSTALL_LIBDIR}/vexa)
set(CMAKE_BUILD_RPATH ${VEXA_MODULE_FOLDER})
set(CMAKE_INSTALL_RPATH "$ORIGIN/../${VEXA_MODULE_DESTINATION}")
function(vexa_late_module target name)
  cmake_parse_arguments(ARG "" "FOR" "SOURCES;LINKS" ${ARGN})
  string(TOLOWER ${name} file)
  set(module vexa_${file}_module)
  if(NOT UNIX)
    add_library(${module} STATIC ${ARG_SOURCES})
    target_link_libraries(${target} PUBLIC ${module})
  else()
    add_library(${module} MODULE ${ARG_SOURCES})
    set_target_properties(${module} PROPERTIES PREFIX "" OUTPUT_NAME vexa-${file}
      LIBRARY_OUTPUT_DIRECTORY ${VEXA_MODULE_FOLDER} BUILD_RPATH "" INSTALL_RPATH "")
    target_link_options(${module} PRIVATE LINKER:--exclude-libs,ALL)
    set_property(SOURCE ${ARG_FOR} APPEND PROPERTY
      COMPILE_DEFINITIONS VEXA_${name}_MODULE="vexa-${file}.so")
    add_dependencies(${target} ${module})
    install(TARGETS ${module} LIBRARY DESTINATION ${VEXA_MODULE_DESTINATION})
  endif()
  _vexa_common(${module})
  target_include_directories(${module} PRIVATE
    $<TARGET_PROPERTY:${target},INTERFACE_INCLUDE_DIRECTORIES>)
  target_link_libraries(${module} PRIVATE ${ARG_LINKS})
endfunction()
