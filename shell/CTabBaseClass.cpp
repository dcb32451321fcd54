#include "shell/CTabBaseClass.h"

#include "model/CDeviceDatabase.h"

#include <QItemDelegate>
#include <QKeyEvent>

namespace {

// Lets the user leave a field by the Tab key whatever stands in it. An editor's own delegate holds
// the key back while the text is not acceptable, and an empty MAC address is not.
class CFieldDelegate : public QItemDelegate
{
public:
    using QItemDelegate::QItemDelegate;

protected:
    bool eventFilter(QObject* field, QEvent* event) override
    {
        return !IsTabKey(*event) && QItemDelegate::eventFilter(field, event);
    }

private:
    static bool IsTabKey(const QEvent& event)
    {
        if (event.type() != QEvent::KeyPress) {
            return false;
        }
        const int key = static_cast<const QKeyEvent&>(event).key();
        return key == Qt::Key_Tab || key == Qt::Key_Backtab;
    }
};

} // namespace

CTabBaseClass::CTabBaseClass(QWidget* parent)
    : QWidget(parent)
{
}

CTabBaseClass::~CTabBaseClass() = default;

void CTabBaseClass::UpdateControls() {}

void CTabBaseClass::CreateMapper()
{
    mapper.reset(new QDataWidgetMapper);
    mapper->setItemDelegate(new CFieldDelegate(mapper.get()));
    mapper->setModel(TheDeviceDatabase());
}
