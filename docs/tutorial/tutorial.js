// SPDX-License-Identifier: GPL-3.0-or-later

// Highlights the caption of the current scene; a click on a caption seeks to its scene.
const film = document.querySelector("video");
const captions = [...document.querySelectorAll("#captions li")];
const second = (caption) => Number(caption.dataset.second);

function showCaption() {
    const now = captions.findLast((caption) => second(caption) <= film.currentTime);
    for (const caption of captions)
        caption.classList.toggle("now", caption === now);
}

for (const caption of captions)
    caption.addEventListener("click", () => {
        film.currentTime = second(caption);
        film.play();
    });
film.addEventListener("timeupdate", showCaption);
showCaption();
