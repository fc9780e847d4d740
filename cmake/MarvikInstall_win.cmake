# What a Windows computer needs beside the program: one folder that runs where it lies. The libraries
# are DLLs of their own, so anyone may put others in their place.
install(TARGETS MarvikTools marvikctl marvikctl-helper RUNTIME DESTINATION .)
install(FILES ${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/config.json ${CMAKE_SOURCE_DIR}/LICENSE
    ${CMAKE_SOURCE_DIR}/marvikctl/schema/marvikctl.schema.json DESTINATION .)

set(libraries)
foreach(name Core Gui Widgets Network Svg)
    list(APPEND libraries ${MARVIK_WINDOWS_PREFIX}/bin/Qt5${name}.dll)
endforeach()
foreach(name libgcc_s_seh-1 libstdc++-6 libwinpthread-1)
    execute_process(COMMAND ${CMAKE_CXX_COMPILER} -print-file-name=${name}.dll
        OUTPUT_VARIABLE library OUTPUT_STRIP_TRAILING_WHITESPACE)
    cmake_path(IS_ABSOLUTE library is_found)
    if(NOT is_found)
        # Not the compiler's own; it lies with the libraries of the system.
        set(library /usr/x86_64-w64-mingw32/lib/${name}.dll)
    endif()
    list(APPEND libraries ${library})
endforeach()
install(FILES ${libraries} DESTINATION .)

install(FILES ${MARVIK_WINDOWS_PREFIX}/plugins/platforms/qwindows.dll DESTINATION platforms)
install(FILES ${MARVIK_WINDOWS_PREFIX}/plugins/styles/qwindowsvistastyle.dll DESTINATION styles)
install(FILES ${MARVIK_WINDOWS_PREFIX}/plugins/iconengines/qsvgicon.dll DESTINATION iconengines)
foreach(name qgif qico qsvg)
    install(FILES ${MARVIK_WINDOWS_PREFIX}/plugins/imageformats/${name}.dll DESTINATION imageformats)
endforeach()

install(DIRECTORY ${MARVIK_WINDOWS_PREFIX}/licences/ DESTINATION licences)
# The text that the LGPL adds to, and the terms of the compiler's own libraries.
install(FILES /usr/share/common-licenses/GPL-3 DESTINATION licences RENAME GPL-3.txt)
install(FILES /usr/share/doc/gcc-mingw-w64-x86-64-posix-runtime/copyright
    DESTINATION licences RENAME GCC-runtime.txt)
install(FILES /usr/share/doc/mingw-w64-x86-64-dev/copyright DESTINATION licences RENAME MinGW-w64.txt)
