#pragma once

#include <string_view>

// Where the hosted services are found: settings of the build, each replaceable when it is configured
// (-DQUORL_DECISION_API_URL=https://…).
namespace quorl::ServiceHosts {

#ifndef QUORL_DECISION_API_URL
#define QUORL_DECISION_API_URL "https://api.kelvane.example"
#endif
#ifndef QUORL_OPENAI_API_URL
#define QUORL_OPENAI_API_URL "https://api.openai.com/v1"
#endif
#ifndef QUORL_ANTHROPIC_API_URL
#define QUORL_ANTHROPIC_API_URL "https://api.anthropic.com"
#endif
#ifndef QUORL_BEDROCK_RUNTIME_PREFIX
#define QUORL_BEDROCK_RUNTIME_PREFIX "bedrock-runtime."
#endif
#ifndef QUORL_BEDROCK_RUNTIME_SUFFIX
#define QUORL_BEDROCK_RUNTIME_SUFFIX ".amazonaws.com"
#endif
#ifndef QUORL_NUVEL_API_HOST
#define QUORL_NUVEL_API_HOST "api.nuvel.example"
#endif
#ifndef QUORL_NUVEL_DOMAIN
#define QUORL_NUVEL_DOMAIN "nuvel.example"
#endif
#ifndef QUORL_NUVEL_FORMER_URL
#define QUORL_NUVEL_FORMER_URL "https://serve.nuvel.example"
#endif

inline constexpr std::string_view decisionAPI = QUORL_DECISION_API_URL; // base URL of the hosted decision API
inline constexpr std::string_view openAIAPI = QUORL_OPENAI_API_URL;     // base URL, ends in "/v1"
inline constexpr std::string_view anthropicAPI = QUORL_ANTHROPIC_API_URL;
inline constexpr std::string_view bedrockRuntimePrefix =
    QUORL_BEDROCK_RUNTIME_PREFIX; // of the host name that a region's runtime has
inline constexpr std::string_view bedrockRuntimeSuffix = QUORL_BEDROCK_RUNTIME_SUFFIX;
inline constexpr std::string_view nuvelAPIHost =
    QUORL_NUVEL_API_HOST;                                           // the hosted Nuvel API, host name alone
inline constexpr std::string_view nuvelDomain = QUORL_NUVEL_DOMAIN; // the domain that host lies in
inline constexpr std::string_view formerNuvelURL = QUORL_NUVEL_FORMER_URL; // a hosted service that is no more

} // namespace quorl::ServiceHosts
