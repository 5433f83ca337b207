# Third-party libraries, one line each. The Debian packages that bring them stand in
# packaging/debian-packages.
find_package(Threads REQUIRED)
find_package(PkgConfig REQUIRED)
find_package(OpenSSL REQUIRED COMPONENTS Crypto)
find_package(simdjson REQUIRED)
find_package(RapidJSON REQUIRED)
find_package(CLI11 REQUIRED)
find_package(Qt6 6.4 REQUIRED COMPONENTS Core DBus Gui Network Qml Quick Svg Test)
find_package(QCoro6 REQUIRED COMPONENTS Core)
pkg_check_modules(ICU REQUIRED IMPORTED_TARGET icu-uc icu-i18n)
pkg_check_modules(VIPS REQUIRED IMPORTED_TARGET vips)
pkg_check_modules(JPEG REQUIRED IMPORTED_TARGET libjpeg)
pkg_check_modules(LCMS REQUIRED IMPORTED_TARGET lcms2)
pkg_check_modules(HEIF REQUIRED IMPORTED_TARGET libheif)
pkg_check_modules(RAW REQUIRED IMPORTED_TARGET libraw_r)
pkg_check_modules(EXIV2 REQUIRED IMPORTED_TARGET exiv2)
pkg_check_modules(TIFF REQUIRED IMPORTED_TARGET libtiff-4)
pkg_check_modules(SQLITE REQUIRED IMPORTED_TARGET sqlite3)
pkg_check_modules(HWY REQUIRED IMPORTED_TARGET libhwy)

# RapidJSON's package file sets variables only, without a target.
add_library(lumisort-rapidjson INTERFACE)
target_include_directories(lumisort-rapidjson SYSTEM INTERFACE ${RAPIDJSON_INCLUDE_DIRS})
