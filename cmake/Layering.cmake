# Which folder may include from and import which: a test reads this table.
set(CORVANE_LAYERS
    "platform:"
    "platform/linux:platform"
    "keys:platform"
    "core:keys platform"
    "look:platform"
    "island:look core keys platform"
    "panes:island look core keys platform"
    "onboarding:island look core platform"
    "app:onboarding panes island look core keys platform platform/linux"
)
