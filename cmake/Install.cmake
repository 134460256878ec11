# What an engineer who embeds the filter gets: the image core and the filter as libraries, found by
# find_package(VBlur) as VBlur::image and VBlur::blur, headers below include/vblur.
include(CMakePackageConfigHelpers)

install(TARGETS vblur_image vblur_blur EXPORT VBlurTargets
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR})
foreach(room image blur)
  install(DIRECTORY ${PROJECT_SOURCE_DIR}/src/${room} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/vblur
    FILES_MATCHING PATTERN "*.h")
endforeach()
install(EXPORT VBlurTargets NAMESPACE VBlur:: DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/VBlur)
configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/VBlurConfig.cmake.in
  ${PROJECT_BINARY_DIR}/VBlurConfig.cmake INSTALL_DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/VBlur)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/VBlurConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/VBlurConfig.cmake ${PROJECT_BINARY_DIR}/VBlurConfigVersion.cmake
  DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/VBlur)
