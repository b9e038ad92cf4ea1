// SPDX-License-Identifier: MIT
#pragma once

#include <QPointer>

#include <functional>
#include <type_traits>
#include <utility>

// Returns a callback that calls `function` while `owner` exists. After the owner is deleted the callback does nothing
// and returns a default value. Make it and call it on the owner's thread.
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
