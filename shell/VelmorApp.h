// The module's application object: two commands, and nothing that lives between their runs.
#pragma once

#include "shell/ModuleFrame.h"

class CVelmorApp : public AcRxArxApp {
public:
    int On_kInitAppMsg(void *packet) override { return AcRxArxApp::On_kInitAppMsg(packet); }
    int On_kUnloadAppMsg(void *packet) override { return AcRxArxApp::On_kUnloadAppMsg(packet); }

protected:
    CommandTable Commands() const override;
};
