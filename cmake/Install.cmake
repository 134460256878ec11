# What an engineer who embeds the effect gets: its server with the library that it needs, the interfaces
# to talk to it as VBlur::platform, and where the server lies as VBlur_SERVER; or the image core and the
# filter alone as VBlur::image and VBlur::blur. Headers below include/vblur.
include(CMakePackageConfigHelpers)

install(TARGETS vblur_image vblur_blur vblur_platform EXPORT VBlurTargets
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(TARGETS vblur_server vblur_dssdk vblur_dsvwr
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}/vblur
  RUNTIME DESTINATION ${CMAKE_INSTALL_LIBDIR}/vblur)
if(VBLUR_BUILD_APPS)
  install(TARGETS vblur_host vblur_pictures vblur_gl
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}/vblur
    RUNTIME DESTINATION ${CMAKE_INSTALL_LIBDIR}/vblur)
endif()
foreach(room image blur platform)
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
