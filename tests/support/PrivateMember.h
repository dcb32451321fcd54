// SPDX-License-Identifier: MIT

#pragma once

/// Lets a test reach a private member, for what no caller can bring about yet. An explicit
/// instantiation may name one:
///
///     struct LastResult
///     {
///         using Type = quint16 CDeviceCommunication::*;
///         friend Type MemberOf(LastResult);
///     };
///     template struct PrivateMember<LastResult, &CDeviceCommunication::lastResult>;
///
/// Then `device.*MemberOf(LastResult())` is the member. For each once in a program, and in no
/// namespace.
template<class Tag, typename Tag::Type Member>
struct PrivateMember
{
    friend typename Tag::Type MemberOf(Tag) { return Member; }
};
