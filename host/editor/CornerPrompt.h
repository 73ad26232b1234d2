// Tells the view that a point which is asked for is the corner of a window.
#pragma once

namespace velmor {

/// While one lives, points that are asked for are corners of windows: no object snap, ortho or polar tracking moves
/// them, and from the prompt's base a rectangle runs to the pointer in place of a line. Nests.
class CornerPrompt {
public:
    CornerPrompt() { ++s_count; }
    ~CornerPrompt() { --s_count; }
    CornerPrompt(const CornerPrompt &) = delete;
    CornerPrompt &operator=(const CornerPrompt &) = delete;
    static bool isOn() { return s_count > 0; }

private:
    static inline int s_count = 0;
};

} // namespace velmor
