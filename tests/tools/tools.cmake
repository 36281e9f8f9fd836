# The programs beside the player, from the outside.
add_test(NAME tools_render COMMAND bash ${CMAKE_CURRENT_LIST_DIR}/test_render.sh ${CMAKE_BINARY_DIR}/bin)
add_test(NAME tools_measure_change COMMAND bash ${CMAKE_CURRENT_LIST_DIR}/test_measure_change.sh ${CMAKE_BINARY_DIR}/bin)
add_test(NAME tools_packages COMMAND bash ${CMAKE_CURRENT_LIST_DIR}/test_packages.sh)
