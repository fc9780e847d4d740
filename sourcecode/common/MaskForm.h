#pragma once

#include <QPointer>
#include <QWidget>

class QDialog;

/// Darkens the covered window behind a dialog. It is shown and hidden with the dialog, and it
/// places the dialog.
class MaskForm : public QWidget
{
    Q_OBJECT

public:
    /// Covers the active window until setCoveredWidget() is called.
    explicit MaskForm(QWidget* parent = nullptr);

    /// Null is ignored.
    void setCoveredWidget(QWidget* widget);

    /// Shows, hides and places itself with @p dialog from now on, and no longer with the dialog
    /// before. Null is ignored.
    void follow(QDialog* dialog);
    /// Follows @p dialog and shows it, and the mask with it.
    void showUnder(QDialog* dialog);
    /// Raises the mask and the dialog above other windows that were shown over the covered one.
    void raiseDialog();

protected:
    void showEvent(QShowEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void cover();
    void placeDialog();

    QPointer<QWidget> m_covered;
    QDialog* m_dialog = nullptr;
};
