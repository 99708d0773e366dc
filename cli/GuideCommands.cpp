#include "app/Services.h"
#include "base/VisibleText.h"
#include "cli/Account.h"
#include "cli/Arguments.h"
#include "cli/Items.h"
#include "cli/Output.h"
#include "library/RefreshSchedule.h"
#include "protocol/XtreamAPIClient.h"

namespace ondavia::cli {
namespace {

struct GuideChannel final {
    std::int64_t streamId = 0;
    std::string epgChannelId;
};

/// The channel that the command names. Raises CommandError where it has no guide.
GuideChannel requireGuideChannel(const CommandContext& context) {
    const Channel channel = requireItem(context.services, context.arguments.id);
    if (!channel.epgChannelId || channel.epgChannelId->empty()) {
        throw CommandError("the provider names no guide for " + channel.id);
    }
    return {channel.streamId, *channel.epgChannelId};
}

/// A guide without an answer is no failure, but a silent command would look like one.
void tellNothingFound(const char* text) {
    writeLine(stderr, text);
}

void printPrograms(Output& output, const std::vector<EPGProgram>& programs) {
    Output::Table table(output, {"start", "stop", "title"});
    for (const auto& program : programs) {
        table.add(recordOf(program));
    }
    table.finish();
}

} // namespace

QCoro::Task<void> loadGuide(CommandContext context) {
    Services& services = context.services;
    const auto client = requireClient(services.appState);
    co_await services.refresh.loadGuide(client);
    const std::int64_t programs = services.store->mainContext().count<EPGProgram>();
    if (programs == 0) {
        tellNothingFound("warning: the provider's guide holds no programme");
    }
    const Record record{{"programs", programs},
                        {"lastEpgLoad", toValue(services.defaults->dateForKey(guideSchedule.lastKey))}};
    context.output.print(record);
}

QCoro::Task<void> showCurrentProgram(CommandContext context) {
    const GuideChannel channel = requireGuideChannel(context);
    const EPGService service(context.services.guideEnvironment());
    if (const auto program = service.getCurrentProgram(channel.epgChannelId)) {
        context.output.print(recordOf(*program));
    } else {
        tellNothingFound("the guide holds nothing that is on now");
    }
    co_return;
}

QCoro::Task<void> listPrograms(CommandContext context) {
    const GuideChannel channel = requireGuideChannel(context);
    const EPGService service(context.services.guideEnvironment());
    const auto programs = service.getProgramsForChannel(channel.epgChannelId, *context.arguments.day);
    if (programs.empty()) {
        tellNothingFound("the guide holds nothing that begins on this day");
    }
    printPrograms(context.output, programs);
    co_return;
}

QCoro::Task<void> loadShortGuide(CommandContext context) {
    const GuideChannel channel = requireGuideChannel(context);
    const auto client = requireClient(context.services.appState);
    EPGService service(context.services.guideEnvironment());
    co_await service.loadEPGFromAPI(client, channel.streamId, channel.epgChannelId);
    const std::string prefix = channel.epgChannelId + "_";
    auto programs = context.services.store->mainContext().fetch<EPGProgram>(
        {.where = field(&EPGProgram::channelId) == channel.epgChannelId,
         .sort = {ascending(&EPGProgram::start)}});
    std::erase_if(programs, [&prefix](const EPGProgram& program) { return !program.id.starts_with(prefix); });
    if (programs.empty()) {
        tellNothingFound("the provider has no short guide for this channel, or it could not be kept: "
                         "ondavia-cli doctor may say why");
    }
    printPrograms(context.output, programs);
}

} // namespace ondavia::cli
