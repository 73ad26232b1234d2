// The application frame that stands between the host's messages and a module: one handler for each message, and
// three tables that say what a module brings.
//
// A table is an array of pointers; a null pointer is an empty place to skip. The entries belong to the module and live
// as long as it.
#pragma once

#include "contracts/DrawingHost.h"

#include <cstdint>
#include <span>

/// Flag of a command that runs outside of the documents; such a row is added without a resource instance.
inline constexpr std::int32_t kSessionCommandFlag = 1 << 21;
/// Flag of a command that may start while another one runs.
inline constexpr std::int32_t kTransparentCommandFlag = 1;

/// One row of the command table.
struct CommandEntry {
    const wchar_t *m_pGroup;
    const wchar_t *m_pGlobalName; ///< independent of language
    const wchar_t *m_pLocalName;  ///< null: comes from the module's string table by m_nLocalNameId
    std::int32_t m_nFlags;
    AcRxFunctionPtr m_pHandler;
    void *m_pUiContext;
    std::int32_t m_nLocalNameId; ///< -1 when the local name is given
};

/// One row of the table of external functions.
struct FunctionEntry {
    const wchar_t *m_pName;
    short m_nCode;
};

/// One row of the table of custom classes.
struct ClassEntry {
    void (*m_pInitialise)();
    void (*m_pCleanUp)();
    bool m_bInitialised;
};

using CommandTable = std::span<const CommandEntry *const>;
using FunctionTable = std::span<const FunctionEntry *const>;
using ClassTable = std::span<ClassEntry *const>;

/// Handle of the attached module; null before it is attached.
void *&ModuleHandle();

/// Frame of a module that brings classes. A handler answers 0 for success.
class AcRxDbxApp {
public:
    virtual ~AcRxDbxApp() = default;

    /// Hands a message to its handler and answers with its result; a number without a handler gives 0.
    int acrxEntryPoint(int message, void *packet);

    virtual int On_kInitAppMsg(void *packet);
    virtual int On_kUnloadAppMsg(void *packet);
    virtual int On_kLoadDwgMsg(void *) { return 0; }
    virtual int On_kUnloadDwgMsg(void *) { return 0; }
    virtual int On_kInvkSubrMsg(void *) { return 0; }
    virtual int On_kCfgMsg(void *) { return 0; }
    virtual int On_kEndMsg(void *) { return 0; }
    virtual int On_kQuitMsg(void *) { return 0; }
    virtual int On_kSaveMsg(void *) { return 0; }
    virtual int On_kDependencyMsg(void *) { return 0; }
    virtual int On_kNoDependencyMsg(void *) { return 0; }
    virtual int On_kOleUnloadAppMsg(void *) { return 0; }
    virtual int On_kPreQuitMsg(void *) { return 0; }
    virtual int On_kInitDialogMsg(void *) { return 0; }
    virtual int On_kEndDialogMsg(void *) { return 0; }
    virtual int On_kNullMsg(void *) { return 0; }

protected:
    virtual void RegisterServerComponents() {}
    virtual ClassTable Classes() const { return {}; }

    void *m_hModule = nullptr;
    bool m_bUnlocked = true;
    bool m_bMDIAware = true;
};

/// Frame of a module that brings commands as well.
class AcRxArxApp : public AcRxDbxApp {
public:
    int On_kInitAppMsg(void *packet) override;
    int On_kUnloadAppMsg(void *packet) override;

protected:
    virtual CommandTable Commands() const { return {}; }
    virtual FunctionTable Functions() const { return {}; }
};
