#pragma once

#include <QStyledItemDelegate>

/// Gives an item of the device list that has no size hint of its own the height of its card;
/// otherwise a list that scrolls would cut off the end of that card.
class DeviceListDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem& option,
                                 const QModelIndex& index) const override;
};
