// The module's application object: two commands and a dialog that the host offers, and
// nothing that lives between their runs.
#pragma once

#include "shell/ModuleFrame.h"

class CVelmorApp : public AcRxArxApp {
public:
    int On_kInitAppMsg(void *packet) override;
    int On_kUnloadAppMsg(void *packet) override;

protected:
    CommandTable Commands() const override;
};
