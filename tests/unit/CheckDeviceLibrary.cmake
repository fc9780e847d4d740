# Fails when a program that links MarvikDevice alone needs Qt Widgets or GStreamer.
#   cmake -DPROGRAM=... -P CheckDeviceLibrary.cmake
execute_process(COMMAND readelf -d ${PROGRAM} OUTPUT_VARIABLE dynamic COMMAND_ERROR_IS_FATAL ANY)
if(NOT dynamic MATCHES "libQt5Core")
    message(FATAL_ERROR "${PROGRAM} does not link Qt: the check looks at the wrong file")
endif()
if(dynamic MATCHES "libQt5Widgets|libQt5Gui|libgst")
    message(FATAL_ERROR "MarvikDevice needs a screen:\n${dynamic}")
endif()
