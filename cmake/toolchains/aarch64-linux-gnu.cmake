# Cross build for 64-bit ARM (aarch64-linux-gnu) against Debian's multiarch
# packages: this architecture's Qt, log4cplus and cpp-httplib live in
# /usr/lib/aarch64-linux-gnu beside the native ones, and the native moc and rcc
# serve the build.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR aarch64)
set(CMAKE_LIBRARY_ARCHITECTURE aarch64-linux-gnu)
set(TARN_DEBIAN_ARCH arm64)
set(CMAKE_C_COMPILER aarch64-linux-gnu-gcc)
set(CMAKE_CXX_COMPILER aarch64-linux-gnu-g++)
# GNUInstallDirs gives the multiarch library directory only to a native
# build; the device's packages need it too.
set(CMAKE_INSTALL_LIBDIR lib/aarch64-linux-gnu CACHE PATH "Object code libraries (lib/aarch64-linux-gnu)")

# pkg-config must see only this architecture's .pc files.
set(ENV{PKG_CONFIG_LIBDIR} /usr/lib/aarch64-linux-gnu/pkgconfig:/usr/share/pkgconfig)

# Tests run under qemu-user with the multiarch root as its library root.
# The cross compiler's own /usr/aarch64-linux-gnu holds an older C library, under
# which every program that starts a thread hangs.
find_program(TARN_QEMU qemu-aarch64 REQUIRED)
set(CMAKE_CROSSCOMPILING_EMULATOR ${TARN_QEMU} -L /)
