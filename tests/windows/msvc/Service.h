/// What the service of the tests exports beside the backend's interface. It does nothing by itself: the host
/// says what it answers and when it delivers.
#pragma once

#include <stdint.h>

extern "C" {

/// What there is and what has happened since the library was loaded.
struct ServiceCounts {
    int receiversMade;     ///< constructor of `IQuillApiCallbacks`
    int receiversEnded;    ///< its destructor
    int connections;       ///< API objects that live
    long receiverUses;     ///< owners of the receiver given to the latest `Start`; 0 when it has gone
    long factoryObservers; ///< weak pointers to the factory, with one for all its owners
    int isFactoryGone;     ///< whether there is no factory
};

enum ServiceFault : uint32_t {
    serviceWorks = 0,
    serviceFactoryFails,  ///< `GetQuillApiFactory` returns 7
    serviceFactoryGone,   ///< the factory goes
    serviceNullApi,       ///< `CreateApi` succeeds with no object
    serviceApiFails,      ///< `CreateApi` returns 13
    serviceStartFails,    ///< `Start` returns 16
    serviceStartThrows,   ///< `Start` throws
    serviceRequestThrows, ///< every request throws
};

/// Chooses a fault from now on.
__declspec(dllexport) void serviceSetFault(uint32_t fault);
/// Delivers a document on a thread of the service's own and waits for it.
/// @param document slot of `IQuillApiCallbacks`
/// @return whether the receiver was there
__declspec(dllexport) int serviceDeliver(int document, const char* json);
/// The latest request as "Operation JSON", and forgets it; empty if there was none.
__declspec(dllexport) const char* serviceTakeRequest();
__declspec(dllexport) ServiceCounts serviceCounts();

/// Lets so many threads of the service's own deliver documents to whatever receiver there is, without pause,
/// also while the plugin stops and after that.
/// @param threads at most 8; 0 ends them all
__declspec(dllexport) void serviceDeliverAlways(int threads, const char* json);
}
