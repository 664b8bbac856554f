// show-routes: what `inet show routing static` does.

#include "commands/routing/route_show.h"

int main() {
    return routing::ShowStaticRoutes() ? 0 : 1;
}
