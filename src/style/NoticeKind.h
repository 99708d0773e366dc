#pragma once

#include <QObject>
#include <qqmlregistration.h>

/// What a remark or a toast tells, which decides its symbol and its colour.
namespace ondavia::NoticeKind {

Q_NAMESPACE
QML_ELEMENT

enum Kind { Info, Success, Warning, Error };
Q_ENUM_NS(Kind)

} // namespace ondavia::NoticeKind
