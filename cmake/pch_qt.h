#pragma once
// What nearly every file with Qt includes: compiled once.
#include "pch_pure.h"

#include <QObject>
#include <QString>
#include <qcoro/qcorotask.h>
