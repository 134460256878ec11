# vblur_module([STATIC|OBJECT|SHARED|LOADED] [MAY_INCLUDE <folder>...] [LINK <target>...])
#
# The folder that calls it, as one library of all .cpp files in it, named after the folder: src/image is vblur_image,
# host/base is vblur_host_base. STATIC is the default; a folder of headers alone becomes an interface library; LOADED is
# a library that is opened at run time and never linked.
#
# The folder becomes a room of the house: every include of another room must be in MAY_INCLUDE, a list of folders as
# includes name them (image, host/base) or of single headers, or the build stops with the line that broke the rule.
# What a SHARED or LOADED library exports is listed in exports.map beside its CMakeLists.txt.
function(vblur_module)
  cmake_parse_arguments(PARSE_ARGV 0 module "STATIC;OBJECT;SHARED;LOADED" "" "MAY_INCLUDE;LINK")
  vblur_room_of("${CMAKE_CURRENT_SOURCE_DIR}" room)
  string(REPLACE "/" "_" name "${room}")
  set(target "vblur_${name}")
  file(GLOB sources CONFIGURE_DEPENDS "${CMAKE_CURRENT_SOURCE_DIR}/*.cpp")
  file(GLOB headers CONFIGURE_DEPENDS "${CMAKE_CURRENT_SOURCE_DIR}/*.h")
  if(NOT WIN32)
    list(FILTER headers EXCLUDE REGEX "_windows\\.h$")
  endif()

  # Sources of one platform.
  if(WIN32)
    list(FILTER sources EXCLUDE REGEX "_posix\\.cpp$")
  else()
    list(FILTER sources EXCLUDE REGEX "_windows\\.cpp$")
  endif()

  set(kind STATIC)
  if(module_OBJECT)
    set(kind OBJECT)
  elseif(module_SHARED)
    set(kind SHARED)
  elseif(module_LOADED)
    set(kind MODULE)
  endif()
  if(sources)
    add_library(${target} ${kind} ${sources} ${headers})
    set(scope PUBLIC)
    vblur_warnings(${target})
  else()
    add_library(${target} INTERFACE)
    set(scope INTERFACE)
  endif()
  if(module_SHARED OR module_LOADED)
    vblur_shared_library(${target} ${kind})
  endif()
  add_library(VBlur::${name} ALIAS ${target})
  set_target_properties(${target} PROPERTIES EXPORT_NAME ${name})
  target_include_directories(${target} ${scope}
    "$<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/src>" "$<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}>"
    "$<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>")
  target_compile_features(${target} ${scope} cxx_std_20)
  target_link_libraries(${target} ${scope} ${module_LINK})
  vblur_check_includes(${target} MAY_INCLUDE ${module_MAY_INCLUDE})
  vblur_headers_alone(${target} HEADERS ${headers} LINK ${module_LINK})

  # The system's header replaces names of the others in a unit.
  set(systems ${sources})
  list(FILTER systems INCLUDE REGEX "_windows\\.cpp$")
  if(systems)
    set_source_files_properties(${systems} PROPERTIES SKIP_UNITY_BUILD_INCLUSION ON)
  endif()

  # A vector source includes itself once for each instruction set, which it cannot do beside other sources.
  set(simd ${sources})
  list(FILTER simd INCLUDE REGEX "_simd\\.cpp$")
  if(simd)
    set_source_files_properties(${simd} PROPERTIES SKIP_UNITY_BUILD_INCLUSION ON)
    if(VBLUR_FUZZERS)
      # They take an hour to compile with the fuzzer's instruments, and the fuzzers of files render nothing.
      set_source_files_properties(${simd} PROPERTIES COMPILE_OPTIONS "-fno-sanitize=all;-O0")
    endif()
  endif()
endfunction()

# The name by which includes reach a folder.
function(vblur_room_of folder result)
  cmake_path(RELATIVE_PATH folder BASE_DIRECTORY "${PROJECT_SOURCE_DIR}" OUTPUT_VARIABLE room)
  string(REGEX REPLACE "^src/" "" room "${room}")
  set(${result} "${room}" PARENT_SCOPE)
endfunction()

# vblur_shared_library(<target> <kind> [<exports.map>]): where a library that others load or link lies, what it exports (by
# the calling folder's exports.map unless told), and its version. Those that are loaded at run time are
# found beside each other, in a build as installed.
function(vblur_shared_library target kind)
  set(exports "${CMAKE_CURRENT_SOURCE_DIR}/exports.map")
  if(ARGC GREATER 2)
    set(exports "${ARGV2}")
  endif()
  if(NOT EXISTS "${exports}")
    message(FATAL_ERROR "${target}: expected ${exports}, the list of what it exports")
  endif()
  set(folder "${PROJECT_BINARY_DIR}/lib/vblur")
  if(WIN32)
    # Beside the programs that use it: nothing else tells the system where it lies.
    set(folder "${CMAKE_RUNTIME_OUTPUT_DIRECTORY}")
    vblur_export_functions(${target} "${exports}")
    set_target_properties(${target} PROPERTIES PREFIX "")
  else()
    target_link_options(${target} PRIVATE "LINKER:--version-script=${exports}")
  endif()
  set_target_properties(${target} PROPERTIES
    LIBRARY_OUTPUT_DIRECTORY "${folder}"
    RUNTIME_OUTPUT_DIRECTORY "${folder}"
    INSTALL_RPATH "$ORIGIN"
    LINK_DEPENDS "${exports}")
  if(WIN32)
    return()
  endif()
  if(kind STREQUAL "SHARED")
    set_target_properties(${target} PROPERTIES VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR}.${PROJECT_VERSION_MINOR})
  else()
    set_target_properties(${target} PROPERTIES PREFIX lib)
    # Missing symbols fail the load, not the first call.
    target_link_options(${target} PRIVATE LINKER:-z,now)
  endif()
endfunction()

# On Windows a library exports the C functions that its exports.map names, or all that it defines if it names classes.
function(vblur_export_functions target exports)
  file(READ "${exports}" text)
  if(text MATCHES "extern \"C\\+\\+\"")
    # Those of the compiler's libraries stay inside.
    target_link_options(${target} PRIVATE LINKER:--export-all-symbols LINKER:--exclude-libs,ALL)
    return()
  endif()
  string(REPLACE ";" "," text "${text}")
  string(REGEX MATCHALL "[A-Za-z_]+," names "${text}")
  list(JOIN names "\n" names)
  string(REPLACE "," "" names "${names}")
  set(definition "${CMAKE_CURRENT_BINARY_DIR}/${target}.def")
  file(CONFIGURE OUTPUT "${definition}" CONTENT "EXPORTS\n${names}\n" @ONLY)
  target_sources(${target} PRIVATE "${definition}")
endfunction()

function(vblur_warnings target)
  target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Wnon-virtual-dtor
    $<$<BOOL:${VBLUR_WARNINGS_AS_ERRORS}>:-Werror>)
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    # g++ 12 warns of overlapping copies inside its own std::string (GCC bug 105651) and of unset members
    # inside its own std::optional (GCC bug 80635). Clang and the sanitizers watch for the real thing.
    target_compile_options(${target} PRIVATE -Wno-restrict -Wno-maybe-uninitialized)
  endif()
endfunction()

# vblur_check_includes(<target> [MAY_INCLUDE <folder or header>...]): enters the calling folder into the list of rooms
# and has the build check what its files include.
function(vblur_check_includes target)
  cmake_parse_arguments(PARSE_ARGV 1 check "" "" "MAY_INCLUDE")
  vblur_room_of("${CMAKE_CURRENT_SOURCE_DIR}" room)
  set_property(GLOBAL APPEND PROPERTY VBLUR_ROOMS "${room}")
  file(GLOB files CONFIGURE_DEPENDS "${CMAKE_CURRENT_SOURCE_DIR}/*.cpp" "${CMAKE_CURRENT_SOURCE_DIR}/*.h")
  set(stamp "${CMAKE_CURRENT_BINARY_DIR}/${target}.includes")
  string(REPLACE ";" "," allowed "${check_MAY_INCLUDE}")
  add_custom_command(
    OUTPUT "${stamp}"
    COMMAND ${CMAKE_COMMAND} -DROOM=${room} -DFOLDER=${CMAKE_CURRENT_SOURCE_DIR} "-DALLOWED=${allowed}"
            -DROOT=${PROJECT_SOURCE_DIR} -DROOMS=${PROJECT_BINARY_DIR}/rooms.txt -DSTAMP=${stamp}
            -P "${PROJECT_SOURCE_DIR}/cmake/CheckIncludes.cmake"
    DEPENDS ${files} "${PROJECT_SOURCE_DIR}/cmake/CheckIncludes.cmake" "${PROJECT_BINARY_DIR}/rooms.txt"
    COMMENT "Checking what ${room} includes"
    VERBATIM)
  add_custom_target(${target}_includes ALL DEPENDS "${stamp}")
  add_dependencies(${target} ${target}_includes)
endfunction()

# Target headers_alone, which no other needs, compiles each header by itself.
function(vblur_headers_alone target)
  cmake_parse_arguments(PARSE_ARGV 1 alone "" "" "HEADERS;LINK")
  set(sources "")
  foreach(header IN LISTS alone_HEADERS)
    vblur_room_of("${header}" name)
    set(source "${CMAKE_CURRENT_BINARY_DIR}/headers_alone/${name}.cpp")
    file(CONFIGURE OUTPUT "${source}" CONTENT "#include \"${name}\"\n" @ONLY)
    list(APPEND sources "${source}")
  endforeach()
  if(NOT TARGET headers_alone)
    add_custom_target(headers_alone)
  endif()
  if(NOT sources)
    return()
  endif()
  add_library(${target}_headers OBJECT EXCLUDE_FROM_ALL ${sources})
  set_target_properties(${target}_headers PROPERTIES UNITY_BUILD OFF)
  target_include_directories(${target}_headers PRIVATE "${PROJECT_SOURCE_DIR}/src" "${PROJECT_SOURCE_DIR}")
  target_link_libraries(${target}_headers PRIVATE ${alone_LINK})
  target_compile_options(${target}_headers PRIVATE -O0)
  # Whatever the target defines, also after this.
  target_compile_definitions(${target}_headers PRIVATE "$<TARGET_PROPERTY:${target},COMPILE_DEFINITIONS>")
  vblur_warnings(${target}_headers)
  add_dependencies(headers_alone ${target}_headers)
endfunction()

# Rooms of other systems, which this one does not build.
function(vblur_rooms_elsewhere)
  foreach(room IN LISTS ARGN)
    set_property(GLOBAL APPEND PROPERTY VBLUR_ROOMS "${room}")
  endforeach()
endfunction()

# Called when every room has been entered: writes their list for the checks, and refuses a folder with sources below one
# of FOLDERS that is no room.
function(vblur_close_house)
  cmake_parse_arguments(PARSE_ARGV 0 house "" "" "FOLDERS")
  get_property(rooms GLOBAL PROPERTY VBLUR_ROOMS)
  foreach(folder IN LISTS house_FOLDERS)
    file(GLOB_RECURSE files "${PROJECT_SOURCE_DIR}/${folder}/*.h" "${PROJECT_SOURCE_DIR}/${folder}/*.cpp")
    foreach(file IN LISTS files)
      cmake_path(GET file PARENT_PATH parent)
      vblur_room_of("${parent}" room)
      if(NOT room IN_LIST rooms)
        message(FATAL_ERROR "${file}: its folder is no room of the house: expected vblur_module() in its CMakeLists.txt")
      endif()
    endforeach()
  endforeach()
  list(SORT rooms)
  list(JOIN rooms "\n" text)
  file(CONFIGURE OUTPUT "${PROJECT_BINARY_DIR}/rooms.txt" CONTENT "${text}\n" @ONLY)
endfunction()
