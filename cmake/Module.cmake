# vblur_module(<name> [SHARED] [MAY_INCLUDE <folder or header>...] [LINK <target>...])
#
# One folder of the house, as one static library `vblur_<name>` of all the .cpp files in it (a shared one
# when told so, an interface library when there are none). The folders are free to look around as little as possible:
# every quoted or angled include that names another folder of the house must be in MAY_INCLUDE, or
# the build stops with the line that broke the rule. A single header may be let in by its path, such
# as effect/PropertyTable.h.
function(vblur_module name)
  cmake_parse_arguments(PARSE_ARGV 1 module "SHARED" "" "MAY_INCLUDE;LINK")
  file(GLOB sources CONFIGURE_DEPENDS "${CMAKE_CURRENT_SOURCE_DIR}/*.cpp")
  file(GLOB headers CONFIGURE_DEPENDS "${CMAKE_CURRENT_SOURCE_DIR}/*.h")

  set(target "vblur_${name}")
  if(sources)
    set(kind STATIC)
    if(module_SHARED)
      set(kind SHARED)
    endif()
    add_library(${target} ${kind} ${sources} ${headers})
    if(module_SHARED)
      # Those that are loaded at run time are found beside each other, in a build as installed.
      set_target_properties(${target} PROPERTIES
        LIBRARY_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/lib/vblur"
        RUNTIME_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/lib/vblur"
        INSTALL_RPATH "$ORIGIN")
    endif()
    set(scope PUBLIC)
    vblur_warnings(${target})
  else()
    add_library(${target} INTERFACE)
    set(scope INTERFACE)
  endif()
  add_library(VBlur::${name} ALIAS ${target})
  set_target_properties(${target} PROPERTIES EXPORT_NAME ${name})
  target_include_directories(${target} ${scope}
    "$<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/src>" "$<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}>"
    "$<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}/vblur>")
  target_compile_features(${target} ${scope} cxx_std_20)
  target_link_libraries(${target} ${scope} ${module_LINK})
  vblur_check_includes(${target} ${name} "${CMAKE_CURRENT_SOURCE_DIR}" "${module_MAY_INCLUDE}" "${sources};${headers}")
endfunction()

function(vblur_warnings target)
  target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Wnon-virtual-dtor -Werror)
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    # g++ 12 warns of overlapping copies inside its own std::string (GCC bug 105651) and of unset members
    # inside its own std::optional (GCC bug 80635). Clang and the sanitizers watch for the real thing.
    target_compile_options(${target} PRIVATE -Wno-restrict -Wno-maybe-uninitialized)
  endif()
endfunction()

function(vblur_check_includes target name folder allowed files)
  set(stamp "${CMAKE_CURRENT_BINARY_DIR}/${target}.includes")
  string(REPLACE ";" "," allowed_list "${allowed}")
  add_custom_command(
    OUTPUT "${stamp}"
    COMMAND ${CMAKE_COMMAND} -DNAME=${name} -DFOLDER=${folder} -DALLOWED=${allowed_list} -DROOT=${PROJECT_SOURCE_DIR}
            -DSTAMP=${stamp} -P "${PROJECT_SOURCE_DIR}/cmake/CheckIncludes.cmake"
    DEPENDS ${files} "${PROJECT_SOURCE_DIR}/cmake/CheckIncludes.cmake"
    COMMENT "Checking what ${name} includes"
    VERBATIM)
  add_custom_target(${target}_includes ALL DEPENDS "${stamp}")
  add_dependencies(${target} ${target}_includes)
endfunction()
