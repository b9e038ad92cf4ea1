// SPDX-License-Identifier: MIT
#pragma once

#include <QPointer>

#include <functional>
#include <type_traits>
#include <utility>

// A callback that calls `function` unless `owner` has gone by then; it answers a default value instead. For callbacks
// that whoever holds them may call late. Make it on the thread of the owner, and call it there.
template<typename Owner, typename Function>
auto whileAlive(Owner *owner, Function function)
{
    return [owner = QPointer<Owner>(owner), function = std::move(function)]<typename... Arguments>(
               Arguments &&...arguments) -> std::invoke_result_t<const Function &, Arguments...> {
        using Result = std::invoke_result_t<const Function &, Arguments...>;
        if (owner)
            return std::invoke(function, std::forward<Arguments>(arguments)...);
        if constexpr (!std::is_void_v<Result>)
            return Result();
    };
}
