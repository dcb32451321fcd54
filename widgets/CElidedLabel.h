// SPDX-License-Identifier: MIT

#pragma once

#include <QLabel>

/// Shows any text in one line, as plain text. A text that does not fit loses its middle, and a tool
/// tip shows all of it. Line feeds and the like never change the label's height. A long text costs
/// memory, but no time.
class CElidedLabel : public QLabel
{
    Q_OBJECT

public:
    explicit CElidedLabel(QWidget* parent = nullptr);

    /// Room for a few letters, whatever the text is. The label takes the room that the layout
    /// leaves.
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    bool IsElided() const;
};
