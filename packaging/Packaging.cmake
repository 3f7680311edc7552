# Tamblo as a desktop application: what `cmake --install` puts where, the
# Debian package (CPack), and the contents of the macOS bundle. Included from
# the top-level CMakeLists.txt after the `tamblo` target and CTest.
include(GNUInstallDirs)

set(TAMBLO_APP_ID com.zendrova.Tamblo)
set(TAMBLO_ICON_SVG ${CMAKE_CURRENT_LIST_DIR}/icons/tamblo.svg)
find_program(RSVG_CONVERT rsvg-convert DOC "Renders the SVG icon into PNGs (librsvg2-bin / brew librsvg)")

install(TARGETS tamblo
  RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR}
  BUNDLE DESTINATION .)

if(APPLE)
  # --- macOS: Info.plist, the icon as .icns, ffmpeg in Contents/Resources.
  if(CMAKE_OSX_DEPLOYMENT_TARGET)
    set(TAMBLO_MACOS_MINIMUM ${CMAKE_OSX_DEPLOYMENT_TARGET})
  else()
    set(TAMBLO_MACOS_MINIMUM 12.0)  # what Homebrew's Qt 6 runs on
  endif()
  configure_file(${CMAKE_CURRENT_LIST_DIR}/macos/Info.plist.in ${CMAKE_CURRENT_BINARY_DIR}/Info.plist @ONLY)
  set_target_properties(tamblo PROPERTIES MACOSX_BUNDLE_INFO_PLIST ${CMAKE_CURRENT_BINARY_DIR}/Info.plist)

  # Tamblo.icns from the SVG: the ten PNGs iconutil expects, then iconutil.
  if(NOT RSVG_CONVERT)
    message(FATAL_ERROR "rsvg-convert is needed to make the bundle's icon: brew install librsvg")
  endif()
  find_program(ICONUTIL iconutil REQUIRED)
  set(iconset ${CMAKE_CURRENT_BINARY_DIR}/Tamblo.iconset)
  set(icon_pixels 16 32 32 64 128 256 256 512 512 1024)
  set(icon_names icon_16x16 icon_16x16@2x icon_32x32 icon_32x32@2x icon_128x128 icon_128x128@2x
                 icon_256x256 icon_256x256@2x icon_512x512 icon_512x512@2x)
  set(iconset_pngs)
  foreach(px name IN ZIP_LISTS icon_pixels icon_names)
    add_custom_command(OUTPUT ${iconset}/${name}.png
      COMMAND ${CMAKE_COMMAND} -E make_directory ${iconset}
      COMMAND ${RSVG_CONVERT} -w ${px} -h ${px} -o ${iconset}/${name}.png ${TAMBLO_ICON_SVG}
      DEPENDS ${TAMBLO_ICON_SVG} VERBATIM)
    list(APPEND iconset_pngs ${iconset}/${name}.png)
  endforeach()
  set(icns ${CMAKE_CURRENT_BINARY_DIR}/Tamblo.icns)
  add_custom_command(OUTPUT ${icns}
    COMMAND ${ICONUTIL} -c icns -o ${icns} ${iconset}
    DEPENDS ${iconset_pngs} VERBATIM)
  target_sources(tamblo PRIVATE ${icns})
  set_source_files_properties(${icns} PROPERTIES MACOSX_PACKAGE_LOCATION Resources)

  # The transcoder ships inside the bundle (ToolPaths looks in
  # Contents/Resources/ffmpeg on macOS).
  find_program(TAMBLO_BUNDLED_FFMPEG ffmpeg DOC "The ffmpeg copied into Tamblo.app/Contents/Resources")
  if(TAMBLO_BUNDLED_FFMPEG)
    add_custom_command(TARGET tamblo POST_BUILD
      COMMAND ${CMAKE_COMMAND} -E copy ${TAMBLO_BUNDLED_FFMPEG} $<TARGET_BUNDLE_CONTENT_DIR:tamblo>/Resources/ffmpeg
      COMMENT "Copying ${TAMBLO_BUNDLED_FFMPEG} into Tamblo.app/Contents/Resources/ffmpeg" VERBATIM)
  else()
    set(no_ffmpeg "No ffmpeg found for the bundle: Tamblo.app needs one at Tamblo.app/Contents/Resources/ffmpeg. "
                  "Install it (brew install ffmpeg) and configure again, or configure with "
                  "-DTAMBLO_BUNDLED_FFMPEG=/path/to/ffmpeg, or copy one there by hand.")
    message(WARNING ${no_ffmpeg})
    add_custom_command(TARGET tamblo POST_BUILD COMMAND ${CMAKE_COMMAND} -E echo "${no_ffmpeg}" VERBATIM)
  endif()
  return()
endif()

# --- Linux: menu entry, icons, AppStream data.
install(FILES ${CMAKE_CURRENT_LIST_DIR}/linux/${TAMBLO_APP_ID}.desktop
        DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
install(FILES ${CMAKE_CURRENT_LIST_DIR}/linux/${TAMBLO_APP_ID}.metainfo.xml
        DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo)
install(FILES ${TAMBLO_ICON_SVG}
        DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps RENAME ${TAMBLO_APP_ID}.svg)

# PNG sizes of the hicolor theme, rendered from the SVG at build time.
set(TAMBLO_ICON_SIZES 16 22 24 32 48 64 128 256 512)
if(RSVG_CONVERT)
  set(icon_pngs)
  foreach(size IN LISTS TAMBLO_ICON_SIZES)
    set(dir ${CMAKE_CURRENT_BINARY_DIR}/icons/hicolor/${size}x${size}/apps)
    add_custom_command(OUTPUT ${dir}/${TAMBLO_APP_ID}.png
      COMMAND ${CMAKE_COMMAND} -E make_directory ${dir}
      COMMAND ${RSVG_CONVERT} -w ${size} -h ${size} -o ${dir}/${TAMBLO_APP_ID}.png ${TAMBLO_ICON_SVG}
      DEPENDS ${TAMBLO_ICON_SVG} VERBATIM)
    list(APPEND icon_pngs ${dir}/${TAMBLO_APP_ID}.png)
    install(FILES ${dir}/${TAMBLO_APP_ID}.png DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/${size}x${size}/apps)
  endforeach()
  add_custom_target(tamblo_icons ALL DEPENDS ${icon_pngs})
else()
  message(WARNING "rsvg-convert not found (apt-get install librsvg2-bin): "
                  "only the scalable icon is installed, no PNG sizes")
endif()

# --- The Debian package: cpack -G DEB (in the build folder).
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME tamblo)
set(CPACK_PACKAGE_VENDOR Zendrova)
set(CPACK_PACKAGE_HOMEPAGE_URL https://www.zendrova.com/tamblo/)
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "disc burner for audio CDs, video and data discs, and disc images")
set(CPACK_PACKAGE_DESCRIPTION
  "Tamblo collects audio files, videos or folders into a compilation and burns\n"
  "it as an audio CD, MP3 disc, video DVD or Blu-ray, or data disc. It also\n"
  "makes and burns ISO images, copies and erases discs, and previews files.\n"
  "It drives ffmpeg, xorriso, cdrskin and eject.")
string(REPLACE ";" "" CPACK_PACKAGE_DESCRIPTION "${CPACK_PACKAGE_DESCRIPTION}")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "Zendrova <tamblo@zendrova.com>")
set(CPACK_DEBIAN_PACKAGE_SECTION otherosfs)
# The libraries it links (Qt 6 and the C++ runtime) come from dpkg-shlibdeps;
# the rest are what it starts or loads at run time: the GStreamer plug-in
# sets Qt Multimedia plays with (MPEG program streams need -bad), and the
# four tools.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_DEPENDS
  "gstreamer1.0-plugins-base, gstreamer1.0-plugins-good, gstreamer1.0-plugins-bad, gstreamer1.0-libav, ffmpeg, xorriso, cdrskin, eject")
include(CPack)

if(BUILD_TESTING)
  add_test(NAME packaging_desktop_entry_valid
           COMMAND desktop-file-validate ${CMAKE_CURRENT_LIST_DIR}/linux/${TAMBLO_APP_ID}.desktop)
  add_test(NAME packaging_metainfo_valid
           COMMAND appstreamcli validate --no-net --strict ${CMAKE_CURRENT_LIST_DIR}/linux/${TAMBLO_APP_ID}.metainfo.xml)
  add_test(NAME packaging_deb_installs
           COMMAND ${CMAKE_CURRENT_LIST_DIR}/linux/check-deb.sh ${CMAKE_BINARY_DIR})
  set_tests_properties(packaging_deb_installs PROPERTIES TIMEOUT 300)
endif()
