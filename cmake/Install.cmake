# What an engineer who embeds the filter or the effect gets: libvblur as VBlur::vblur; the effect's server with the
# libraries that it needs, and where it lies as VBlur_SERVER; the interfaces to talk to it as VBlur::platform; the
# property table and the ids of classes as VBlur::properties. Includes begin with vblur/. The rooms behind these are not
# installed.
include(CMakePackageConfigHelpers)

set(vblur_plugin_folder ${CMAKE_INSTALL_LIBDIR}/vblur)
set(vblur_header_folder ${CMAKE_INSTALL_INCLUDEDIR}/vblur)
install(TARGETS vblur_vblur vblur_platform vblur_properties EXPORT VBlurTargets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(TARGETS vblur_server vblur_sdk_system vblur_sdk_effects vblur_sdk_viewer
  LIBRARY DESTINATION ${vblur_plugin_folder}
  RUNTIME DESTINATION ${vblur_plugin_folder})
if(VBLUR_BUILD_APPS AND NOT WIN32)
  get_property(light_modules GLOBAL PROPERTY VBLUR_LIGHT_MODULES)
  install(TARGETS vblur_host vblur_pictures ${light_modules} vblur_host_gl
    LIBRARY DESTINATION ${vblur_plugin_folder}
    RUNTIME DESTINATION ${vblur_plugin_folder})
endif()
# One file by two names: where they are the same name, the second copy replaces the first.
install(FILES ${PROJECT_SOURCE_DIR}/src/vblur/Blur.h DESTINATION ${vblur_header_folder})
install(FILES ${PROJECT_SOURCE_DIR}/src/vblur/Blur.h DESTINATION ${vblur_header_folder} RENAME blur.h)
foreach(room platform properties)
  install(DIRECTORY ${PROJECT_SOURCE_DIR}/src/${room} DESTINATION ${vblur_header_folder} FILES_MATCHING PATTERN "*.h")
endforeach()
install(EXPORT VBlurTargets NAMESPACE VBlur:: DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/VBlur)
configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/VBlurConfig.cmake.in
  ${PROJECT_BINARY_DIR}/VBlurConfig.cmake INSTALL_DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/VBlur
  PATH_VARS CMAKE_INSTALL_LIBDIR)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/VBlurConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/VBlurConfig.cmake ${PROJECT_BINARY_DIR}/VBlurConfigVersion.cmake
  DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/VBlur)
