#pragma once

/** The kinds of actions that menus of the family offer; the numbers are the same in all programs. */
enum class NyActionType : int {
    ShowServiceInformation = 1410,
    LaunchMainApplication = 1411,
    QuitService = 1412,
    ShowLastProposal = 1413,
};
