# Cross build for an ARM device against Debian's multiarch packages: the
# architecture's Qt, log4cplus and cpp-httplib live in /usr/lib/TRIPLET
# beside the native ones, and the native moc and rcc serve the build. The
# toolchain file of an architecture sets TARN_TRIPLET, TARN_DEBIAN_ARCH,
# TARN_QEMU_NAME and CMAKE_SYSTEM_PROCESSOR, then includes this file.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_LIBRARY_ARCHITECTURE ${TARN_TRIPLET})
set(CMAKE_C_COMPILER ${TARN_TRIPLET}-gcc)
set(CMAKE_CXX_COMPILER ${TARN_TRIPLET}-g++)
# GNUInstallDirs gives the multiarch library directory only to a native
# build; the device's packages need it too.
set(CMAKE_INSTALL_LIBDIR lib/${TARN_TRIPLET} CACHE PATH "Object code libraries (lib/${TARN_TRIPLET})")

# pkg-config must see only this architecture's .pc files.
set(ENV{PKG_CONFIG_LIBDIR} /usr/lib/${TARN_TRIPLET}/pkgconfig:/usr/share/pkgconfig)

# Tests run under qemu-user with the multiarch root as its library root.
# The cross compiler's own /usr/TRIPLET holds an older C library, under
# which every program that starts a thread hangs.
find_program(TARN_QEMU ${TARN_QEMU_NAME} REQUIRED)
set(CMAKE_CROSSCOMPILING_EMULATOR ${TARN_QEMU} -L /)
