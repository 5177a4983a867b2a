# The programs that give the same results under valgrind, which rounds to the nearest alone, fails no
# allocation of a test, and takes about fifty times as long.

find_program(VALGRIND_PROGRAM valgrind REQUIRED)
foreach(name IN ITEMS
    byte_block byte_class ByteStream calendar Library Library_loader locale mktimeEx MovingTimeScale
    ORUsyslog printing String StringNVP_hosts StringTrim StringUtilities SysStats SysStats_system
    Variant Variant_comparison Variant_interface Variant_types VariantText_digits version wrapping
    xtime xtime_arithmetic xtime_calendar xtime_clock xtime_counts xtime_interface xtime_parse
    zero_sign)
  utillibrary_test_run(valgrind.${name}
    "${VALGRIND_PROGRAM};-q;--error-exitcode=99;--leak-check=full;--errors-for-leak-kinds=definite;--suppressions=${CMAKE_CURRENT_SOURCE_DIR}/valgrind.supp;$<TARGET_FILE:${name}_test>"
    Pacific/Kiritimati C)
  set_tests_properties(valgrind.${name} PROPERTIES LABELS valgrind)
endforeach()
