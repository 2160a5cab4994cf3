#pragma once

namespace quillet {

/// What a control's surroundings do to its looks.
struct ControlState {
    double hover = 0; ///< 0 … 1; in between while the ground fades
    bool isPressed = false;
    bool isEnabled = true;
};

/// How much of a disabled control shows.
inline constexpr double disabledOpacity = 0.4;

inline double opacity(const ControlState& state) {
    return state.isEnabled ? 1 : disabledOpacity;
}

} // namespace quillet
