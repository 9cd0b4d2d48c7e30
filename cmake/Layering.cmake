# Which folders each folder may include from and import. A test checks the sources against this table. A
# folder may use only folders listed above it, so that there are no cycles.
set(CORVANE_LAYERS
    "platform:"
    "platform/linux/files:platform"
    "platform/linux/process:platform"
    "platform/linux/http:platform"
    "platform/linux/bus:platform"
    "platform/linux/keyring:platform platform/linux/bus platform/linux/files"
    "platform/linux/toolkit:platform"
    "platform/linux/x11:platform platform/linux/toolkit"
    "platform/linux/tray:platform platform/linux/x11"
    "keys:platform"
    "core:keys platform"
    "look:platform"
    "look/paint:look"
    "look/motion:look look/paint"
    "look/controls:look look/motion look/paint"
    "look/secrets:look look/controls platform"
    "island:look look/controls look/motion look/paint core keys platform"
    "panes:island look look/controls look/motion look/paint look/secrets core keys platform"
    "onboarding:island look look/controls look/motion look/paint core platform"
    "app:onboarding panes island look look/motion look/paint core keys platform platform/linux/bus platform/linux/files platform/linux/http platform/linux/keyring platform/linux/process platform/linux/toolkit platform/linux/tray platform/linux/x11"
)
