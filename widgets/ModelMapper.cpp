// SPDX-License-Identifier: MIT

#include "widgets/ModelMapper.h"

#include "model/CDeviceDatabase.h"

#include <QDataWidgetMapper>
#include <QItemDelegate>
#include <QKeyEvent>
#include <QLineEdit>

namespace {

bool IsTab(int key)
{
    return key == Qt::Key_Tab || key == Qt::Key_Backtab;
}

bool IsTabKey(const QEvent& event)
{
    return event.type() == QEvent::KeyPress && IsTab(static_cast<const QKeyEvent&>(event).key());
}

// Qt's own delegate holds the Tab key back while a text is not acceptable, such as an empty MAC
// address. It also gives the focus to the field's parent when a dialog opens. This one does
// neither.
class CFieldDelegate : public QItemDelegate
{
public:
    using QItemDelegate::QItemDelegate;

protected:
    bool eventFilter(QObject* field, QEvent* event) override
    {
        const bool isOfAnEditor = qobject_cast<QLineEdit*>(field) != nullptr &&
                                  event->type() != QEvent::FocusOut && !IsTabKey(*event);
        return isOfAnEditor && QItemDelegate::eventFilter(field, event);
    }
};

} // namespace

QDataWidgetMapper* NewModelMapper()
{
    auto* const mapper = new QDataWidgetMapper;
    mapper->setItemDelegate(new CFieldDelegate(mapper));
    mapper->setModel(TheDeviceDatabase());
    return mapper;
}
