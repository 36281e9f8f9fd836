# The real program on a virtual screen with a virtual sound card. The tests share one machine's time: one at a time, and
# nothing else beside them.
find_package(X11 REQUIRED)

add_executable(close_window system/close_window.cpp)
target_link_libraries(close_window PRIVATE X11::X11)
add_executable(window_timeline system/window_timeline.cpp)
target_link_libraries(window_timeline PRIVATE X11::X11)
add_executable(film_watcher system/film_watcher.cpp)
target_link_libraries(film_watcher PRIVATE X11::X11)
add_executable(drag_source system/drag_source.cpp)
target_link_libraries(drag_source PRIVATE Qt6::Widgets)
add_executable(activation_token system/activation_token.cpp)
add_executable(update_server system/update_server.cpp)
target_link_libraries(update_server PRIVATE network_test_support)
add_executable(accessible_tree system/accessible_tree.cpp)
target_link_libraries(accessible_tree PRIVATE Qt6::DBus)
set_target_properties(accessible_tree PROPERTIES AUTOMOC ON)
add_executable(desktop_settings system/desktop_settings.cpp)
target_link_libraries(desktop_settings PRIVATE Qt6::DBus)
file(GLOB MONKEY_SOURCES CONFIGURE_DEPENDS ${CMAKE_CURRENT_LIST_DIR}/monkey/*.cpp)
add_executable(monkey ${MONKEY_SOURCES})
target_link_libraries(monkey PRIVATE X11::X11 X11::Xtst)
add_executable(standing_folder system/standing_folder.cpp)
set_target_properties(monkey close_window window_timeline film_watcher drag_source update_server accessible_tree
                      desktop_settings standing_folder activation_token
                      PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)

function(add_system_test name script)
  add_test(NAME system_${name} COMMAND bash ${CMAKE_CURRENT_LIST_DIR}/test_${script}.sh ${CMAKE_BINARY_DIR}/bin)
  set_tests_properties(system_${name} PROPERTIES LABELS system RUN_SERIAL TRUE TIMEOUT 300 SKIP_RETURN_CODE 77
                                                 ENVIRONMENT "${ARGN}")
endfunction()

file(GLOB SYSTEM_TESTS CONFIGURE_DEPENDS ${CMAKE_CURRENT_LIST_DIR}/test_*.sh)
foreach(script ${SYSTEM_TESTS})
  string(REGEX REPLACE ".*/test_(.*)\\.sh$" "\\1" name ${script})
  add_system_test(${name} ${name})
endforeach()

# The same tests with what a desktop may have instead: another sound server, another kind of screen, another hand.
foreach(name loop_is_exact skip_lands_exactly pause_loses_no_frame slow_loop_keeps_its_period sound_reserve_grows
             sound_device_is_followed sound_server_restarts sound_server_stands_still recording_is_exact level_meters)
  add_system_test(${name}_on_pipewire ${name} QUILLMERE_STAGE_SOUND=pipewire)
endforeach()
foreach(hand mouse assistive)
  add_system_test(first_minute_by_${hand} first_minute QUILLMERE_HAND=${hand})
endforeach()
foreach(name every_window_is_drawn window_keeps_its_size keys_alone closing_a_panel_ends_nothing
             closing_the_window_ends_the_program dropping_files screen_server_goes)
  add_system_test(${name}_on_wayland ${name} QUILLMERE_STAGE_SCREEN=wayland)
endforeach()

# Where it is asked for it sets up a system.
set_tests_properties(system_package_on_a_clean_system PROPERTIES TIMEOUT 3600)
if(QUILLMERE_SANITIZE)  # nobody packs such programs
  set_tests_properties(system_package PROPERTIES DISABLED TRUE)
endif()
