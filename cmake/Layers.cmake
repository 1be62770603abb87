# The layers of the program, from the executable down. A target may depend only on targets of a lower layer.
set(TEVORA_LAYERS
    executable
    shell
    view
    manager
    formats
    framework
    objects
    platform
    mervlib)
