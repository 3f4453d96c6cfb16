// The chapters of request_road, in the order in which it tells them. Each asks hearth for
// something, tells what came back and checks it; none ends the program.
#ifndef HEARTH_EXAMPLES_CHAPTERS_H
#define HEARTH_EXAMPLES_CHAPTERS_H

#include "story.h"

// start_up.cc
void startUp(Story& story);

// one_request.cc
void readRadio(Story& story);
void changeRadio(Story& story);
void addPortForward(Story& story);
void refuseMessages(Story& story);
void changeNothing(Story& story);
void askForWhatIsNotThere(Story& story);

// many_requests.cc
void turnSecondLockerAway(Story& story);
void giveSessionsTheirOwn(Story& story);
void countInACrowd(Story& story);
void slowDownGuessing(Story& story);

// start_up.cc
void leaveFilesInOrder(Story& story);

#endif
