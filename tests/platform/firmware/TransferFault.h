#pragma once

#include <QString>

/// One fault of a camera in a transfer, and the expected outcome. The image has five packets, so a
/// transfer without faults has seven requests: start, packets, end.
struct TransferFault
{
    static constexpr int kPackets = 5;
    static constexpr int kStart = 1;
    static constexpr int kEnd = kPackets + 2;

    /// How the program sees the answer, and whether the camera executed the request.
    enum Effect { Acknowledged, RefusedNotDone, RefusedDone, LostNotDone, LostDone };
    /// Which requests have the fault: one, it and all later ones of its kind, or it and all later
    /// ones.
    enum Scope { Once, SameCommand, FromThenOn };

    struct Outcome
    {
        bool sent = true;         ///< the result of the transfer
        int requests = kEnd;      ///< requests that reach the camera
        int lostControls = 0;     ///< commands whose answer times out after three seconds
        int lostPackets = 0;      ///< packets whose answer times out after one second
        bool cameraHasAll = true; ///< the camera has received the image and the end command
    };

    QString name; ///< of the virtual camera's fault, with arguments
    Effect effect = Acknowledged;
    int at = kStart; ///< number of the request
    Scope scope = Once;

    /// The fault's text for the virtual camera.
    [[nodiscard]] QString request() const;
    /// The name of the row of test data.
    [[nodiscard]] QString title() const;
    [[nodiscard]] Outcome outcome() const;
};
