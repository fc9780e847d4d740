#pragma once

#include <QPointer>
#include <QWidget>

class QDialog;

/// Dims the covered widget behind a dialog: appears and goes with the dialog, and places it.
class MaskForm : public QWidget
{
    Q_OBJECT

public:
    /// Covers the active window until setCoveredWidget() says otherwise.
    explicit MaskForm(QWidget* parent = nullptr);

    /// Null is ignored.
    void setCoveredWidget(QWidget* widget);

    /// From now on the mask follows @p dialog, and no other. Null is ignored.
    void showUnder(QDialog* dialog);

    [[nodiscard]] QDialog* watchedDialog() const { return m_dialog; }

protected:
    void showEvent(QShowEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void cover();
    void placeDialog();

    QPointer<QWidget> m_covered;
    QDialog* m_dialog = nullptr;
};
