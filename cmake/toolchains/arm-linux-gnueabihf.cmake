# Cross build for 32-bit ARM (arm-linux-gnueabihf) against Debian's multiarch
# packages: this architecture's Qt, log4cplus and cpp-httplib live in
# /usr/lib/arm-linux-gnueabihf beside the native ones, and the native moc and rcc
# serve the build.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR arm)
set(CMAKE_LIBRARY_ARCHITECTURE arm-linux-gnueabihf)
set(TARN_DEBIAN_ARCH armhf)
set(CMAKE_C_COMPILER arm-linux-gnueabihf-gcc)
set(CMAKE_CXX_COMPILER arm-linux-gnueabihf-g++)
# GNUInstallDirs gives the multiarch library directory only to a native
# build; the device's packages need it too.
set(CMAKE_INSTALL_LIBDIR lib/arm-linux-gnueabihf CACHE PATH "Object code libraries (lib/arm-linux-gnueabihf)")

# pkg-config must see only this architecture's .pc files.
set(ENV{PKG_CONFIG_LIBDIR} /usr/lib/arm-linux-gnueabihf/pkgconfig:/usr/share/pkgconfig)

# Tests run under qemu-user with the multiarch root as its library root.
# The cross compiler's own /usr/arm-linux-gnueabihf holds an older C library, under
# which every program that starts a thread hangs.
find_program(TARN_QEMU qemu-arm REQUIRED)
set(CMAKE_CROSSCOMPILING_EMULATOR ${TARN_QEMU} -L /)
