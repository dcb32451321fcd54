// SPDX-License-Identifier: MIT

#pragma once

#include <QProxyStyle>

/// The style that the forms were drawn for.
///
/// - The forms have ampersands in their texts and no mnemonics. In the main window an ampersand is
///   shown as it stands, and a page's title gets the room for it. Qt's own dialogs keep their
///   mnemonics.
/// - A field that cannot be edited has no light ground.
/// - A progress bar is made of plain rectangles. A search paints it for each address, and shaded,
///   rounded shapes would take most of that time. A firmware transfer sets it for each byte, and
///   measuring its text would take most of that time.
/// - The frame of a group has no picture. For a single picture Qt would load all its image plugins
///   at the start.
class CFormStyle : public QProxyStyle
{
    Q_OBJECT

public:
    CFormStyle();

    void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
        const QWidget* widget = nullptr) const override;
    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
        const QWidget* widget = nullptr) const override;
    QSize sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& size,
        const QWidget* widget) const override;
    QRect subElementRect(SubElement element, const QStyleOption* option,
        const QWidget* widget = nullptr) const override;
};
