find_package(Threads REQUIRED)
find_package(PkgConfig REQUIRED)
find_package(Qt6 6.4 REQUIRED COMPONENTS Widgets DBus)
if(UNIX AND NOT APPLE)
  find_package(Fontconfig REQUIRED)  # which Qt takes the fonts from there
endif()
find_package(cubeb REQUIRED)
pkg_check_modules(AV REQUIRED IMPORTED_TARGET libavformat libavcodec libavutil libswresample libswscale)
pkg_check_modules(RUBBERBAND REQUIRED IMPORTED_TARGET rubberband)
pkg_check_modules(CURL REQUIRED IMPORTED_TARGET libcurl>=7.87)
if(QUILLMERE_TESTS)
  find_package(doctest REQUIRED)
  find_package(Qt6 6.4 REQUIRED COMPONENTS Network)  # for the servers of the tests
endif()
