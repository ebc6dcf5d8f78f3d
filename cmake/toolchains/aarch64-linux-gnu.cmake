# 64-bit ARM devices.
set(CMAKE_SYSTEM_PROCESSOR aarch64)
set(TARN_TRIPLET aarch64-linux-gnu)
set(TARN_DEBIAN_ARCH arm64)
set(TARN_QEMU_NAME qemu-aarch64)
include(${CMAKE_CURRENT_LIST_DIR}/multiarch.cmake)
