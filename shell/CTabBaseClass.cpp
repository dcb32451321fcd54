// SPDX-License-Identifier: MIT

#include "shell/CTabBaseClass.h"

CTabBaseClass::CTabBaseClass(QWidget* parent)
    : QWidget(parent)
{
}

CTabBaseClass::~CTabBaseClass() = default;

void CTabBaseClass::UpdateControls() {}
