#pragma once

#include "../VideoProcAmp.h"
#include "V4l2Node.h"

/// The picture properties of a camera as V4L2 user controls. The record's flags are the V4L2
/// control flags.
class V4l2ProcAmp : public VideoProcAmp
{
public:
    explicit V4l2ProcAmp(const QString& node)
        : m_node(node)
    {
    }

    [[nodiscard]] bool isOpen() const { return m_node.isOpen(); }

    bool getRange(VideoProcAmpRecord& record) override;
    bool get(VideoProcAmpRecord& record) override;
    bool set(const VideoProcAmpRecord& record, long value) override;

private:
    V4l2Node m_node;
};
