# Where the program lies on a Linux system, and the Debian package made of it. The program reads
# config.json beside itself, so both have a folder of their own and only a link stands in the path.
set(packaging ${CMAKE_SOURCE_DIR}/packaging/linux)

install(TARGETS MarvikTools RUNTIME DESTINATION lib/marviktools)
install(FILES ${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/config.json DESTINATION lib/marviktools)
file(MAKE_DIRECTORY ${CMAKE_BINARY_DIR}/package)
file(CREATE_LINK ../lib/marviktools/MarvikTools ${CMAKE_BINARY_DIR}/package/MarvikTools SYMBOLIC)
install(FILES ${CMAKE_BINARY_DIR}/package/MarvikTools DESTINATION bin)

configure_file(${CMAKE_SOURCE_DIR}/packaging/udev/70-marviktools.rules.in
    ${CMAKE_BINARY_DIR}/package/70-marviktools.rules @ONLY)
install(FILES ${CMAKE_BINARY_DIR}/package/70-marviktools.rules DESTINATION lib/udev/rules.d)
install(FILES ${packaging}/marviktools.tmpfiles DESTINATION lib/tmpfiles.d RENAME marviktools.conf)
install(TARGETS marvikctl RUNTIME DESTINATION bin)
install(TARGETS marvikctl-helper RUNTIME DESTINATION lib/marviktools)
install(FILES ${CMAKE_SOURCE_DIR}/marvikctl/schema/marvikctl.schema.json DESTINATION share/marviktools)
install(FILES ${packaging}/marviktools.desktop DESTINATION share/applications)
configure_file(${packaging}/invalid.sorvanta.marviktools.metainfo.xml.in
    ${CMAKE_BINARY_DIR}/package/invalid.sorvanta.marviktools.metainfo.xml @ONLY)
install(FILES ${CMAKE_BINARY_DIR}/package/invalid.sorvanta.marviktools.metainfo.xml
    DESTINATION share/metainfo)
file(GLOB icons RELATIVE ${CMAKE_SOURCE_DIR}/images/icons CONFIGURE_DEPENDS
    ${CMAKE_SOURCE_DIR}/images/icons/*/marviktools.*)
foreach(icon ${icons})
    cmake_path(GET icon PARENT_PATH size)
    install(FILES ${CMAKE_SOURCE_DIR}/images/icons/${icon} DESTINATION share/icons/hicolor/${size}/apps)
endforeach()

# Debian wants these two compressed, and the same bytes from every build.
function(install_compressed file name folder)
    add_custom_command(OUTPUT ${CMAKE_BINARY_DIR}/package/${name}
        COMMAND gzip -9nc ${packaging}/${file} > ${CMAKE_BINARY_DIR}/package/${name}
        DEPENDS ${packaging}/${file} VERBATIM)
    add_custom_target(${file}.gz ALL DEPENDS ${CMAKE_BINARY_DIR}/package/${name})
    install(FILES ${CMAKE_BINARY_DIR}/package/${name} DESTINATION ${folder})
endfunction()
install_compressed(MarvikTools.1 MarvikTools.1.gz share/man/man1)
install_compressed(changelog changelog.Debian.gz share/doc/marviktools)
install(FILES ${packaging}/copyright DESTINATION share/doc/marviktools)

# The newest entry of the changelog names the package's version; the program's own is its first part.
file(STRINGS ${packaging}/changelog entries REGEX "^marviktools \\(")
list(GET entries 0 newest)
string(REGEX REPLACE "^marviktools \\(([^)]*)\\).*" "\\1" package_version "${newest}")
string(REGEX REPLACE "-[^-]*$" "" upstream_version "${package_version}")
if(NOT upstream_version STREQUAL PROJECT_VERSION)
    message(FATAL_ERROR "${packaging}/changelog ends with ${package_version}, "
        "the program is ${PROJECT_VERSION}")
endif()

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME marviktools)
set(CPACK_PACKAGE_VERSION ${package_version})
set(CPACK_PACKAGE_CONTACT "Sorvanta <support@sorvanta.invalid>")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_HOMEPAGE "https://www.sorvanta.invalid/")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "configures USB conference cameras")
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION
"MarvikTools finds the supported conference cameras that are plugged in, shows
their picture and changes their settings: image, field of view, automatic
framing, mirroring and microphone sensitivity. It keeps the settings of each
camera and installs new firmware.")
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# What no linker knows: the elements of the preview, and the drawings of the program.
set(CPACK_DEBIAN_PACKAGE_DEPENDS
    "gstreamer1.0-plugins-base, gstreamer1.0-plugins-good, libqt5svg5 (>= 5.15)")
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "fonts-noto-cjk, fonts-dejavu-core, udev")
set(CPACK_DEBIAN_PACKAGE_CONTROL_EXTRA ${packaging}/postinst ${packaging}/postrm)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_OUTPUT_FILE_PREFIX ${CMAKE_BINARY_DIR})
include(CPack)
