#pragma once

#include <functional>
#include <json-c/json.h>
#include <set>
#include <string>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

/// Calls of a function with one of its pointers null, made from its signature.
namespace qvtc::test {

/// A call with one pointer null, and what it gives, as text.
struct Attempt {
    std::string what;
    std::function<std::string()> call;
    std::string expected;
};
using Attempts = std::vector<Attempt>;

struct Function {
    std::string name;
    Attempts attempts;
};

/// Something of its type that a function can use: nothing but the null is wrong with a call.
template <typename Argument>
Argument usable() {
    if constexpr (std::is_same_v<Argument, json_object*>) {
        return json_object_new_object();
    } else if constexpr (std::is_same_v<Argument, const char*>) {
        return "x=1&language=en_US&password=new";
    } else if constexpr (std::is_same_v<Argument, void*>) {
        return const_cast<char*>("x");
    } else if constexpr (std::is_pointer_v<Argument>) {
        alignas(16) static char room[200000] = "x=1";
        return reinterpret_cast<Argument>(room);
    } else {
        return Argument{1};
    }
}

template <typename Result>
std::string as_text(Result result) {
    if constexpr (std::is_same_v<Result, char*>) {
        return result == nullptr ? "null" : '"' + std::string(result) + '"';
    } else if constexpr (std::is_pointer_v<Result>) {
        return result == nullptr ? "null" : std::to_string(reinterpret_cast<long>(result));
    } else {
        return std::to_string(result);
    }
}

template <typename Result, typename... Arguments, std::size_t... At>
std::string called(Result (*function)(Arguments...), std::size_t null,
                   std::index_sequence<At...> /*places*/) {
    std::tuple<Arguments...> arguments{usable<Arguments>()...};
    [[maybe_unused]] const auto clear = [&](auto& argument, std::size_t place) {
        if constexpr (std::is_pointer_v<std::decay_t<decltype(argument)>>) {
            if (place == null) argument = nullptr;
        }
    };
    (clear(std::get<At>(arguments), At), ...);
    if constexpr (std::is_void_v<Result>) {
        std::apply(function, arguments);
        return "";
    } else {
        return as_text(std::apply(function, arguments));
    }
}

/// The attempts at a function; those at its `optional` pointers, counted from 0, are left out.
template <typename Result, typename... Arguments>
Function gives(std::string name, Result (*function)(Arguments...), const std::string& expected = "",
               const std::set<std::size_t>& optional = {}) {
    constexpr bool is_pointer[] = {std::is_pointer_v<Arguments>..., false};
    Attempts attempts;
    for (std::size_t place = 0; place < sizeof...(Arguments); ++place) {
        if (!is_pointer[place] || optional.contains(place)) continue;
        attempts.push_back(
            {name + ", argument " + std::to_string(place + 1),
             [=] { return called(function, place, std::index_sequence_for<Arguments...>()); },
             expected});
    }
    return {std::move(name), attempts};
}

template <typename Result>
Function takes_no_pointer(std::string name, Result (*function)()) {
    return gives(std::move(name), function);
}

template <typename Result, typename... Arguments>
Function takes_no_pointer(std::string name, Result (*function)(Arguments...)) {
    static_assert(!(std::is_pointer_v<Arguments> || ...));
    return gives(std::move(name), function);
}

inline Function with(const std::string& name, std::function<std::string()> call,
                     std::string expected) {
    return {name, {{name, std::move(call), std::move(expected)}}};
}

} // namespace qvtc::test
