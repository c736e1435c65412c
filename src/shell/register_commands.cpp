#include "shell/register_commands.h"

#include "registers/aggregated_register.h"
#include "shell/window_services.h"

namespace zorvane {

namespace {

const LocalizedText ANALYSIS_PENDING_QUESTION{
    L"Trwa analiza. Czy na pewno usunąć dane tymczasowe z pamięci?",
    L"Analysis pending. Are you sure you want to delete temporary data from memory?",
    L"Триває аналіз. Ви впевнені, що хочете видалити тимчасові дані з пам'яті?"};
// Mode of the register's clear that also frees its array and its doubtful registers.
constexpr int8_t CLEAR_AND_FREE = 0;

} // namespace

RegisterCommands::RegisterCommands(WindowServices& window, QObject* parent)
    : QObject(parent), m_window(window) {}

bool RegisterCommands::dispatch(CommandId id) {
    if (id != CommandId::TempRegisterClear) return false;
    clearTemporaryRegister();
    return true;
}

void RegisterCommands::clearTemporaryRegister() {
    TChessProblem* problem = m_window.problems().Current();
    if (!problem || !problem->m_pRegister) return;
    // The solve of the current problem itself greys the command; another's asks first.
    if (m_window.runningSolves().count() > 0 &&
        m_window.prompts().ask(m_window.title(MessageTitle::Question),
                               m_window.translate(ANALYSIS_PENDING_QUESTION), Buttons::YesNo,
                               PromptIcon::Question) != Answer::Yes)
        return;
    problem->m_pRegister->Clear(CLEAR_AND_FREE);
    m_window.showCurrentProblem();
}

} // namespace zorvane
