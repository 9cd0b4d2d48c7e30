# Cross-compiles for Debian on arm64 with the host's clang and Qt tools. CORVANE_SYSROOT is the folder that
# tools/arm64/build makes.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR aarch64)
set(triplet aarch64-linux-gnu)
# Checks of the compiler read this file again, in projects of their own.
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES CORVANE_SYSROOT)

set(CMAKE_C_COMPILER_TARGET ${triplet})
set(CMAKE_CXX_COMPILER_TARGET ${triplet})
set(CMAKE_LIBRARY_ARCHITECTURE ${triplet})
set(CMAKE_SYSROOT "${CORVANE_SYSROOT}")
set(CMAKE_FIND_ROOT_PATH "${CORVANE_SYSROOT}")
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
# GNU strip knows one architecture only.
find_program(CMAKE_STRIP ${triplet}-strip REQUIRED)

set(ENV{PKG_CONFIG_SYSROOT_DIR} "${CORVANE_SYSROOT}")
set(ENV{PKG_CONFIG_LIBDIR}
    "${CORVANE_SYSROOT}/usr/lib/${triplet}/pkgconfig:${CORVANE_SYSROOT}/usr/share/pkgconfig")

# moc, rcc and the QML tools run here.
execute_process(COMMAND dpkg-architecture -qDEB_HOST_MULTIARCH OUTPUT_VARIABLE host_triplet
    OUTPUT_STRIP_TRAILING_WHITESPACE)
set(QT_HOST_PATH /usr)
set(QT_HOST_PATH_CMAKE_DIR "/usr/lib/${host_triplet}/cmake")

# For tests, and programs that the build runs. Qt does not find its plugins and QML modules through qemu.
set(qt "${CORVANE_SYSROOT}/usr/lib/${triplet}/qt6")
set(CMAKE_CROSSCOMPILING_EMULATOR qemu-aarch64-static -L "${CORVANE_SYSROOT}"
    -E "QT_PLUGIN_PATH=${qt}/plugins" -E "QML2_IMPORT_PATH=${qt}/qml")
set(CPACK_DEBIAN_PACKAGE_ARCHITECTURE arm64)
