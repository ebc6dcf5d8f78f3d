# 32-bit ARM devices with hardware floating point.
set(CMAKE_SYSTEM_PROCESSOR arm)
set(TARN_TRIPLET arm-linux-gnueabihf)
set(TARN_DEBIAN_ARCH armhf)
set(TARN_QEMU_NAME qemu-arm)
include(${CMAKE_CURRENT_LIST_DIR}/multiarch.cmake)
