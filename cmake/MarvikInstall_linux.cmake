# Where the program lies on a Linux system, and the Debian package made of it. The program reads
# config.json beside itself, so both have a folder of their own and only a link stands in the path.
set(packaging ${CMAKE_SOURCE_DIR}/packaging/linux)

install(TARGETS MarvikTools RUNTIME DESTINATION lib/marviktools)
install(FILES ${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/config.json DESTINATION lib/marviktools)
file(MAKE_DIRECTORY ${CMAKE_BINARY_DIR}/package)
file(CREATE_LINK ../lib/marviktools/MarvikTools ${CMAKE_BINARY_DIR}/package/MarvikTools SYMBOLIC)
install(FILES ${CMAKE_BINARY_DIR}/package/MarvikTools DESTINATION bin)

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

# Debian wants these compressed, and the same bytes from every build.
# install_compressed(<file> <name> <folder> [further arguments of install(FILES)])
function(install_compressed file name folder)
    set(compressed ${CMAKE_BINARY_DIR}/package/${name})
    if(NOT TARGET ${name})
        add_custom_command(OUTPUT ${compressed}
            COMMAND gzip -9nc ${packaging}/${file} > ${compressed}
            DEPENDS ${packaging}/${file} VERBATIM)
        add_custom_target(${name} ALL DEPENDS ${compressed})
    endif()
    install(FILES ${compressed} DESTINATION ${folder} ${ARGN})
endfunction()
install_compressed(MarvikTools.1 MarvikTools.1.gz share/man/man1)
install_compressed(changelog changelog.Debian.gz share/doc/marviktools)
install(FILES ${packaging}/copyright DESTINATION share/doc/marviktools)
include(MarvikInstallCtl_linux)

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
# It contains the smaller package.
set(CPACK_DEBIAN_PACKAGE_PROVIDES "marvikctl (= ${package_version})")
set(CPACK_DEBIAN_PACKAGE_CONFLICTS marvikctl)
set(CPACK_DEBIAN_PACKAGE_REPLACES marvikctl)
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "fonts-noto-cjk, fonts-dejavu-core, udev")
set(CPACK_DEBIAN_PACKAGE_CONTROL_EXTRA ${packaging}/postinst ${packaging}/postrm)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_OUTPUT_FILE_PREFIX ${CMAKE_BINARY_DIR})
include(CPack)

configure_file(${packaging}/marvikctl/CPackConfigCtl.cmake.in ${CMAKE_BINARY_DIR}/CPackConfigCtl.cmake @ONLY)
