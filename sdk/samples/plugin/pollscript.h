// What the sample plug-in answers when it is given nothing else; the development gateway serves the same.
#pragma once

/// A connection from its beginning to its end: a line per poll, each a JSON array.
inline constexpr char samplePollScript[] = R"([{"code":"5","status":"init"}]
[{"code":"5","status":"authenticating"}]
[{"code":"5","status":"getconfig"}]
[{"code":"5","status":"connected ip=10.8.0.2"}]
[{"code":"5","status":"connected ip=10.8.0.2"}]
[{"code":"5","status":"connected ip=10.8.0.2"}]
[]
[{"code":"8","reason":"1"}]
)";
