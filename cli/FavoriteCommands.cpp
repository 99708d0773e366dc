#include "app/Services.h"
#include "cli/Arguments.h"
#include "cli/Items.h"
#include "cli/Output.h"
#include "personal/FavoritesService.h"

namespace ondavia::cli {

QCoro::Task<void> listFavorites(CommandContext context) {
    FavoritesService service(context.services.store->mainContext(), mainProfileId);
    Output::Table table = tableOfItems(context.output);
    for (const Channel& item : service.getFavoriteChannels()) {
        table.add(recordOf(item));
    }
    table.finish();
    co_return;
}

QCoro::Task<void> toggleFavorite(CommandContext context) {
    FavoritesService service(context.services.store->mainContext(), mainProfileId);
    const std::string& id = context.arguments.id;
    if (!service.isFavorite(id)) {
        // A mark on nothing would never be seen; one whose item has gone can still be taken away.
        (void)requireItem(context.services, id);
    }
    const bool isFavorite = service.toggleFavorite(id);
    // What the service cannot do it does not say.
    if (service.isFavorite(id) != isFavorite) {
        throw CommandError("the favourites cannot be written: nothing was changed");
    }
    const Record record{{"id", id}, {"isFavorite", isFavorite}};
    context.output.print(record);
    co_return;
}

} // namespace ondavia::cli
