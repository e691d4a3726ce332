#pragma once

/** The part of the settings window that an item belongs to. */
enum class NyPreferencesType : int {
    General = 0,
};
