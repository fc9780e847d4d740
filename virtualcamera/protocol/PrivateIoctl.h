#pragma once

/* Requests between the preload library and virtualcamera, on the nodes of virtual cameras only.
 * They are plain numbers without memory behind them, so that each costs one round trip. */

#ifdef __cplusplus
extern "C" {
#endif

enum {
    /* Sent right after open(): waits until virtualcamera has seen the handle, and lets the device
     * refuse it. Answers the number of the handle. */
    VIRTUALCAMERA_IOC_OPENED = 0xF501,
    /* The argument is the number of another handle of the node; this one becomes its copy. */
    VIRTUALCAMERA_IOC_SHARE = 0xF502,
    /* Returns the number of the handle. */
    VIRTUALCAMERA_IOC_HANDLE = 0xF503
};

#ifdef __cplusplus
}
#endif
