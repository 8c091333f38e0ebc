// The page "What works here", filled from the application.
#pragma once

namespace brindlehum {

class AppModel;
class WorksPage;

WorksPage* makeWorksPage(AppModel& model);

}  // namespace brindlehum
