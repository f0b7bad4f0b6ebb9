"""Which names of namespace std each standard header is for, as far as this project uses them.
lint-text demands the header where a name is used. So lint-code can check that a source compiles
alone with all these headers precompiled, which is four times as fast."""

import re

HEADERS = {
    "algorithm": "all_of any_of binary_search clamp copy_if count count_if equal fill_n find"
                 " find_if find_if_not for_each generate is_sorted lower_bound max max_element"
                 " min minmax mismatch none_of partition remove_if replace reverse rotate search"
                 " sort stable_sort transform unique upper_bound",
    "array": "array to_array",
    "atomic": "atomic memory_order_relaxed",
    "bit": "bit_cast countr_zero endian",
    "bitset": "bitset",
    "charconv": "chars_format from_chars to_chars",
    "chrono": "chrono",
    "cmath": "acos asin atan2 cbrt ceil copysign cos exp fabs floor fmod hypot isfinite isnan"
             " lerp llround log lround pow round signbit sin sqrt tan trunc",
    "condition_variable": "condition_variable",
    "csignal": "sig_atomic_t signal",
    "cstddef": "byte max_align_t nullptr_t",  # every header has size_t
    "cstdint": "int8_t int16_t int32_t int64_t uint8_t uint16_t uint32_t uint64_t uintptr_t",
    "cstdio": "fclose fflush fopen fprintf fputs fread fwrite printf puts snprintf",
    "cstdlib": "abort exit free getenv malloc strtod strtoll strtoull",
    "cstring": "memchr memcmp memcpy memset strcmp strerror strlen",
    "ctime": "strftime time time_t tm",
    "deque": "deque",
    "exception": "current_exception exception exception_ptr rethrow_exception set_terminate"
                 " terminate",
    "filesystem": "filesystem",
    "fstream": "ifstream ofstream",
    "functional": "function invoke less",
    "future": "future future_status promise shared_future",
    "initializer_list": "initializer_list",
    "iostream": "cerr cin cout",
    "iterator": "back_inserter istreambuf_iterator make_move_iterator next prev",
    "limits": "numeric_limits",
    "map": "map multimap",
    "memory": "enable_shared_from_this make_shared make_unique shared_ptr unique_ptr weak_ptr",
    "mutex": "lock_guard mutex once_flag scoped_lock unique_lock",
    "new": "bad_alloc",
    "numbers": "numbers",
    "numeric": "accumulate iota",
    "optional": "nullopt optional",
    "queue": "priority_queue queue",
    "random": "minstd_rand mt19937 mt19937_64 uniform_int_distribution",
    "set": "multiset set",
    "span": "span",
    "sstream": "istringstream ostringstream stringstream",
    "stdexcept": "invalid_argument length_error logic_error out_of_range runtime_error",
    "string": "getline stod stoi string to_string",
    "string_view": "string_view",
    "system_error": "errc error_code generic_category system_category system_error",
    "thread": "jthread this_thread thread",
    "tuple": "make_tuple tie tuple",
    "type_traits": "conditional_t decay_t enable_if_t invoke_result_t is_arithmetic_v is_same_v"
                   " is_trivially_copyable_v",
    "typeinfo": "bad_cast",
    "unordered_map": "unordered_map unordered_multimap",
    "unordered_set": "unordered_set",
    "utility": "exchange forward in_place move pair swap",
    "variant": "get_if holds_alternative monostate variant visit",
    "vector": "vector",
}

HEADER_OF = {name: header for header, names in HEADERS.items() for name in names.split()}


def headers_in(text):
    return set(re.findall(r"^#include <([\w/.]+)>", text, re.MULTILINE))
