// SPDX-License-Identifier: GPL-3.0-or-later

// Lights the caption of what the film shows; a click on a caption goes there.
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
