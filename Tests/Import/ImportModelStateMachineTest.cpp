// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "ImportSequence.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <iostream>
#include <sstream>
#include <vector>

namespace bildkurier {
namespace {

using Event = ImportStep::Event;

// Sanitizers and builds for debugging take many times as long.
#ifdef NDEBUG
constexpr int sequences = 20'000;
#else
constexpr int sequences = 2'000;
#endif

/// What brings an import forward comes often, so that the rest meets it in every state.
rc::Gen<ImportStep> anyStep() {
    return rc::gen::build<ImportStep>(
        rc::gen::set(&ImportStep::event, rc::gen::weightedElement<Event>({
                                             {6, Event::connect},
                                             {6, Event::replug},
                                             {1, Event::tellLate},
                                             {3, Event::identify},
                                             {3, Event::plugIn},
                                             {2, Event::unplug},
                                             {4, Event::openSession},
                                             {1, Event::refuseSession},
                                             {4, Event::catalogReady},
                                             {2, Event::cardChanges},
                                             {7, Event::deliver},
                                             {2, Event::deliverAll},
                                             {1, Event::fail},
                                             {1, Event::truncate},
                                             {2, Event::grow},
                                             {2, Event::answerLate},
                                             {2, Event::select},
                                             {7, Event::start},
                                             {1, Event::cancel},
                                             {2, Event::reload},
                                             {1, Event::toggleFilter},
                                             {1, Event::moveSlider},
                                             {2, Event::switchAutoImport},
                                             {2, Event::chooseFolder},
                                             {1, Event::changeLayout},
                                             {3, Event::advance},
                                             {4, Event::stepMain},
                                             {4, Event::stepBackground},
                                             {9, Event::settle},
                                             {1, Event::loseGrant},
                                             {1, Event::changeCapacity},
                                             {1, Event::storeFails},
                                             {1, Event::storeRecovers},
                                             {1, Event::removeFile},
                                             {1, Event::addFile},
                                             {1, Event::fillLog},
                                             {1, Event::fillForm},
                                             {1, Event::applyServer},
                                             {2, Event::checkServer},
                                             {1, Event::forgetServer},
                                             {1, Event::switchKind},
                                             {1, Event::changeHostKey},
                                             {1, Event::refuseConnections},
                                             {2, Event::breakListings},
                                             {1, Event::changeOwnKey},
                                             {1, Event::expectCamera},
                                             {1, Event::anotherProcess},
                                             {3, Event::duringMove},
                                         })),
        rc::gen::set(&ImportStep::which, rc::gen::inRange(0, 12)));
}

TEST(ImportModelStateMachine, KeepsItsPromisesWhateverHappens) {
    auto params = rc::detail::configuration().testParams;
    params.maxSuccess = sequences;
    std::cout << "seed=" << params.seed << '\n';
    const auto result = rc::detail::checkTestable(
        [] {
            ImportSequence sequence(
                {.trusts = *rc::gen::arbitrary<bool>(),
                 .onServer = *rc::gen::weightedElement<bool>({{2, false}, {1, true}}),
                 .isNamed = *rc::gen::weightedElement<bool>({{1, false}, {2, true}})});
            const auto steps = *rc::gen::container<std::vector<ImportStep>>(anyStep());
            for (const auto& step : steps) sequence.happen(step);
            sequence.finish();
            sequence.leave();
        },
        rc::detail::TestMetadata(), params);
    std::ostringstream message;
    rc::detail::printResultMessage(result, message);
    EXPECT_TRUE(result.is<rc::detail::SuccessResult>()) << message.str();
}

}  // namespace
}  // namespace bildkurier
