#include "DeviceListDelegate.h"

#include <QAbstractItemView>

QSize DeviceListDelegate::sizeHint(const QStyleOptionViewItem& option,
                                   const QModelIndex& index) const
{
    const QVariant own = index.data(Qt::SizeHintRole);
    if (own.isValid())
        return own.toSize();
    const auto* view = qobject_cast<const QAbstractItemView*>(option.widget);
    const QWidget* card = view ? view->indexWidget(index) : nullptr;
    return card ? card->minimumSize() : QStyledItemDelegate::sizeHint(option, index);
}
