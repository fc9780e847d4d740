#pragma once

#include <QString>

/// One way in which a camera fails in a transfer, and what becomes of it. The image has five
/// packets, so an undisturbed transfer is seven requests: start, packets, end.
struct TransferFault
{
    static constexpr int kPackets = 5;
    static constexpr int kStart = 1;
    static constexpr int kEnd = kPackets + 2;

    /// What the program sees of an answer, and whether the camera did what it was asked for.
    enum Effect { Acknowledged, RefusedNotDone, RefusedDone, LostNotDone, LostDone };
    /// Which requests are struck: one, it and all of its kind that follow, or it and all that
    /// follow.
    enum Scope { Once, SameCommand, FromThenOn };

    struct Outcome
    {
        bool sent = true;         ///< what the transfer says
        int requests = kEnd;      ///< that reach the camera
        int lostControls = 0;     ///< commands that the program waits three seconds for
        int lostPackets = 0;      ///< packets that it waits one second for
        bool cameraHasAll = true; ///< the camera has the image and was told its end
    };

    QString name; ///< of the virtual camera's fault, with arguments
    Effect effect = Acknowledged;
    int at = kStart; ///< number of the request
    Scope scope = Once;

    /// For the virtual camera.
    [[nodiscard]] QString request() const;
    /// For a row of test data.
    [[nodiscard]] QString title() const;
    [[nodiscard]] Outcome outcome() const;
};
