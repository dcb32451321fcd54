#pragma once

#include <QLabel>

/// One line of plain text from anywhere. What does not fit is left out in the middle, and a tool
/// tip shows the whole. What the text is made of, line feeds for instance, never changes the
/// label's height; its length costs nothing but its memory.
class CElidedLabel : public QLabel
{
    Q_OBJECT

public:
    explicit CElidedLabel(QWidget* parent = nullptr);

    /// Room for a few letters, whatever the text: it takes what the layout leaves.
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    bool IsElided() const;
};
