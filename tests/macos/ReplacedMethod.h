// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

#import <objc/runtime.h>

// While this lives, a method does what `block` does, which takes the object and the method's arguments.
class ReplacedMethod {
public:
    ReplacedMethod(Method replacedMethod, id block)
        : method(replacedMethod)
        , original(method_getImplementation(method))
        , replacement(imp_implementationWithBlock(block))
    {
        method_setImplementation(method, replacement);
    }
    Q_DISABLE_COPY_MOVE(ReplacedMethod)
    ~ReplacedMethod()
    {
        method_setImplementation(method, original);
        imp_removeBlock(replacement);
    }

private:
    const Method method;
    const IMP original;
    const IMP replacement;
};
