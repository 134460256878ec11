# What an engineer who embeds the effect gets: its server with the libraries that it needs, the interfaces to talk to it
# as VBlur::platform, the property table and the ids of classes as VBlur::properties, and where the server lies as
# VBlur_SERVER. Headers are below include/vblur, and includes begin with vblur/.
include(CMakePackageConfigHelpers)

set(vblur_plugin_folder ${CMAKE_INSTALL_LIBDIR}/vblur)
install(TARGETS vblur_image vblur_blur vblur_platform vblur_properties EXPORT VBlurTargets
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(TARGETS vblur_server vblur_sdk_effects vblur_sdk_viewer
  LIBRARY DESTINATION ${vblur_plugin_folder}
  RUNTIME DESTINATION ${vblur_plugin_folder})
if(VBLUR_BUILD_APPS)
  install(TARGETS vblur_host vblur_pictures vblur_host_gl
    LIBRARY DESTINATION ${vblur_plugin_folder}
    RUNTIME DESTINATION ${vblur_plugin_folder})
endif()
foreach(room image blur platform properties)
  install(DIRECTORY ${PROJECT_SOURCE_DIR}/src/${room} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/vblur
    FILES_MATCHING PATTERN "*.h")
endforeach()
install(EXPORT VBlurTargets NAMESPACE VBlur:: DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/VBlur)
configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/VBlurConfig.cmake.in
  ${PROJECT_BINARY_DIR}/VBlurConfig.cmake INSTALL_DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/VBlur
  PATH_VARS CMAKE_INSTALL_LIBDIR)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/VBlurConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/VBlurConfig.cmake ${PROJECT_BINARY_DIR}/VBlurConfigVersion.cmake
  DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/VBlur)
