# Fails when the program needs a screen, GStreamer or a sound server, itself or through a library.
#   cmake -DPROGRAM=... -P CheckNoScreen.cmake
execute_process(COMMAND ldd ${PROGRAM} OUTPUT_VARIABLE libraries COMMAND_ERROR_IS_FATAL ANY)
if(NOT libraries MATCHES "libQt5Core")
    message(FATAL_ERROR "${PROGRAM} does not link Qt: the check looks at the wrong file")
endif()
if(libraries MATCHES "libQt5Widgets|libQt5Gui|libgst|libpulse|libX11|libxcb|libwayland")
    message(FATAL_ERROR "the program needs ${CMAKE_MATCH_0}:\n${libraries}")
endif()
